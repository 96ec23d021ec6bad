// "/bin/zrkping -c COUNT [options] ADDRESS": answers when the state lists the
// address under "reachable" (an array of addresses; without the key every
// address answers). A scope suffix ("fe80::1%vmk0") is ignored.
#include <arpa/inet.h>

#include <cstring>
#include <iostream>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

constexpr const char kTool[] = "zrkping";

std::string Canonical(std::string address) {
    address = address.substr(0, address.find('%'));
    unsigned char bytes[16];
    char text[INET6_ADDRSTRLEN];
    for (int family : {AF_INET, AF_INET6})
        if (::inet_pton(family, address.c_str(), bytes) == 1 &&
            ::inet_ntop(family, bytes, text, sizeof text))
            return text;
    return address;
}

bool Reachable(const std::string& address) {
    auto list = Sim::Get("/reachable");
    if (!list) return true;
    if (!list->is_array()) return false;
    const std::string wanted = Canonical(address);
    for (const auto& entry : *list)
        if (entry.is_string() && Canonical(entry.get<std::string>()) == wanted) return true;
    return false;
}

int PingMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    if (args.empty() || args.back().starts_with("-"))
        return Fail(kTool, "usage: zrkping -c COUNT [options] ADDRESS", 2);
    const std::string address = args.back();
    int count = 3;
    if (auto c = OptionValue(args, "-c")) count = std::max(1, std::atoi(c->c_str()));
    const bool answers = Reachable(address);
    std::cout << "PING " << address << ": 56 data bytes\n";
    for (int i = 0; answers && i < count; ++i)
        std::cout << "64 bytes from " << address << ": icmp_seq=" << i << " ttl=64 time=0.2 ms\n";
    std::cout << "\n--- " << address << " ping statistics ---\n"
              << count << " packets transmitted, " << (answers ? count : 0) << " packets received, "
              << (answers ? "0" : "100") << "% packet loss\n";
    return answers ? 0 : 1;
}

}  // namespace

SIM_TOOL({"/bin/zrkping"}, &PingMain);

}  // namespace Sim::Tools
