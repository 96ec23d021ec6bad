// "/bin/kovacli" and "/sbin/kovacli": the network commands on standard
// switches; everything else goes to KovacliOther.
//   [--formatter=...] network vswitch standard add -v SWITCH [-P PORTS]
//   [--formatter=...] network vswitch standard list
//   [--formatter=...] network vswitch standard uplink add|remove -u PNIC -v SWITCH
//   [--formatter=...] network vswitch standard portgroup add -p GROUP -v SWITCH
// A fault "kovacli.<command>" ("kovacli.vswitch.add", "kovacli.uplink.add",
// "kovacli.uplink.remove", "kovacli.portgroup.add") makes that command fail.
#include <charconv>
#include <iostream>

#include "hostctl/exception.h"
#include "sim/tools.h"
#include "sim/tools/kovacli.h"
#include "sim/tools/toolkit.h"
#include "simhost/network.h"

namespace Sim::Tools {
namespace {

namespace ZN = ZrkCtl::Network;

bool Is(const std::vector<std::string>& words, std::initializer_list<const char*> expected) {
    if (words.size() < expected.size()) return false;
    std::size_t i = 0;
    for (const char* e : expected)
        if (words[i++] != e) return false;
    return true;
}

int List(const std::string&) {
    for (const auto& s : ZN::VirtualSwitchInfoImpl().GetVirtualSwitches()) {
        std::cout << s->GetName() << "\n   Name: " << s->GetName()
                  << "\n   Configured Ports: " << s->GetConfiguredPorts()
                  << "\n   Used Ports: " << s->GetUsedPorts() << "\n   Uplinks: ";
        std::string sep;
        for (const auto& u : s->GetUplinks()) std::cout << sep << u, sep = ", ";
        std::cout << "\n   Portgroups: ";
        sep.clear();
        for (const auto& p : s->GetPortGroups()) std::cout << sep << p, sep = ", ";
        std::cout << "\n\n";
    }
    return 0;
}

int Network(const std::string& tool, const std::vector<std::string>& words) {
    auto vswitch = OptionValue(words, "-v");
    auto missing = [&](const char* what) {
        return Fail(tool, std::string("Missing required parameter ") + what, 1);
    };
    if (Is(words, {"network", "vswitch", "standard", "list"})) return List(tool);
    if (Is(words, {"network", "vswitch", "standard", "add"})) {
        if (auto status = ApplyFault("kovacli.vswitch.add")) return *status;
        if (!vswitch) return missing("-v|--vswitch-name");
        std::int64_t ports = HostCtl::Network::Portset::DEF_NUM_PORTS;
        if (auto text = OptionValue(words, "-P")) {
            auto [end, ec] = std::from_chars(text->data(), text->data() + text->size(), ports);
            if (ec != std::errc() || end != text->data() + text->size())
                return Fail(tool, "Invalid number of ports '" + *text + "'");
        }
        ZN::VirtualSwitchInfoImpl().AddVirtualSwitch(*vswitch, ports);
        return 0;
    }
    for (const char* action : {"add", "remove"}) {
        if (!Is(words, {"network", "vswitch", "standard", "uplink", action})) continue;
        if (auto status = ApplyFault(std::string("kovacli.uplink.") + action)) return *status;
        auto uplink = OptionValue(words, "-u");
        if (!uplink) return missing("-u|--uplink-name");
        if (!vswitch) return missing("-v|--vswitch-name");
        ZN::PortsetImpl s(*vswitch);
        if (std::string(action) == "add") {
            s.AddUplink(*uplink);
        } else {
            auto uplinks = s.GetUplinks();
            if (std::find(uplinks.begin(), uplinks.end(), *uplink) == uplinks.end())
                return Fail(tool, "Uplink " + *uplink + " is not used by " + *vswitch);
            s.RemoveUplink(*uplink);
        }
        return 0;
    }
    if (Is(words, {"network", "vswitch", "standard", "portgroup", "add"})) {
        if (auto status = ApplyFault("kovacli.portgroup.add")) return *status;
        auto group = OptionValue(words, "-p");
        if (!group) return missing("-p|--portgroup-name");
        if (!vswitch) return missing("-v|--vswitch-name");
        ZN::PortsetImpl(*vswitch).AddPortGroup(*group);
        return 0;
    }
    std::string joined;
    for (const auto& w : words) joined += (joined.empty() ? "" : " ") + w;
    return Fail(tool, "Unknown command or namespace '" + joined + "'", 2);
}

int KovacliMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    std::vector<std::string> words;
    for (const auto& a : Arguments(argc, argv))
        if (!a.starts_with("--formatter=")) words.push_back(a);
    if (words.empty() || words[0] != "network") return ::KovacliOther(argc, argv);
    try {
        return Network(tool, words);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        return Fail(tool, e.what());
    }
}

}  // namespace

SIM_TOOL({"/bin/kovacli", "/sbin/kovacli"}, &KovacliMain);

}  // namespace Sim::Tools
