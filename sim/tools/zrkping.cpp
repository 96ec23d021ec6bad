// "/bin/zrkping -c COUNT [options] ADDRESS": answers when the management
// interface reaches the address on the simulated outside network
// (simhost/outside_network.h), or, when the state has a "reachable" list, when
// the list names it. A scope suffix ("fe80::1%zrk0") is ignored. The tool
// fault "zrkping" acts out a hung or failing ping.
#include <iostream>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"
#include "simhost/outside_network.h"

namespace Sim::Tools {
namespace {

constexpr const char kTool[] = "zrkping";

int PingMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    if (args.empty() || args.back().starts_with("-"))
        return Fail(kTool, "usage: zrkping -c COUNT [options] ADDRESS", 2);
    if (auto fault = ApplyFault(kTool)) return *fault;
    const std::string address = args.back();
    int count = 3;
    if (auto c = OptionValue(args, "-c")) count = std::max(1, std::atoi(c->c_str()));
    ZrkCtl::Network::Outside::Reach reach;
    try {
        reach = ZrkCtl::Network::Outside::Reaches(*Sim::Snapshot(), address);
    } catch (const std::exception& e) {
        return Fail(kTool, e.what(), 2);
    }
    std::cout << "PING " << address << ": 56 data bytes\n";
    for (int i = 0; reach.reached && i < count; ++i)
        std::cout << "64 bytes from " << address << ": icmp_seq=" << i << " ttl=64 time=0.2 ms\n";
    if (!reach.reached) std::cout << reach.why << "\n";
    std::cout << "\n--- " << address << " ping statistics ---\n"
              << count << " packets transmitted, " << (reach.reached ? count : 0)
              << " packets received, " << (reach.reached ? "0" : "100") << "% packet loss\n";
    return reach.reached ? 0 : 1;
}

}  // namespace

SIM_TOOL({"/bin/zrkping"}, &PingMain);

}  // namespace Sim::Tools
