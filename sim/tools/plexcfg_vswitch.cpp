// The network-virtualisation agent's switch tool:
//   plexcfg-vswitch -m -p PORTGROUP -I ZRKNIC
// moves the Zerkel NIC onto the standard-switch port group.
#include <iostream>

#include "hostctl/exception.h"
#include "sim/tools.h"
#include "sim/tools/toolkit.h"
#include "simhost/network.h"

namespace Sim::Tools {
namespace {

int PlexcfgVswitchMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    bool migrate = std::find(args.begin(), args.end(), "-m") != args.end();
    auto group = OptionValue(args, "-p");
    auto nic = OptionValue(args, "-I");
    if (!migrate || !group || !nic)
        return Fail(tool, "usage: " + tool + " -m -p PORTGROUP -I ZRKNIC", 2);
    try {
        ZrkCtl::Network::ZrkNicImpl(*nic).ConnectToPortGroup(*group);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        return Fail(tool, e.what());
    }
    std::cout << "Migrated " << *nic << " to " << *group << "\n";
    return 0;
}

}  // namespace

SIM_TOOL({"/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch"}, &PlexcfgVswitchMain);

}  // namespace Sim::Tools
