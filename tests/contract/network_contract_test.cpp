// What every host backend must do for the network screens' host actions: the
// echo test of the management network test, new port groups on standard
// switches, and the network-virtualisation operations agent (its version and
// the move of a Zerkel NIC).
#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "tests/contract/contract.h"

namespace {

using namespace TeskContract;
namespace HN = HostCtl::Network;

class NetworkContract : public OnManagedHostWithConditions {};

// The port group of a Zerkel NIC ("" when it is on none).
std::string NicGroup(const HostCtl::Backend& host, const std::string& name) {
    for (const auto& nic : host.GetZerkelNicInfo()->GetZerkelNics())
        if (nic->GetName() == name &&
            nic->GetPortConnection().GetType() == HN::ConnectionType::PortGroup)
            return nic->GetPortConnection().GetPortGroup().GetName();
    return "";
}

bool HasGroup(const HostCtl::Backend& host, const std::string& vswitch, const std::string& group) {
    const auto groups = host.GetPortset(vswitch)->GetPortGroups();
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

// The echo test (from a worker thread, with an object made before the thread
// started), a new port group and the move of a Zerkel NIC around the stopped
// operations agent: each answers whether it worked, a failure being an answer
// and not an exception, and ran its tool; what did not work changed nothing,
// and an agent that ran before runs afterwards.
TEST_F(NetworkContract, HostActionsAnswerWhetherTheyWorked) {
    using B = const HostCtl::Backend&;
    const auto ping = [](const char* target) {
        return [target](B b) {
            std::shared_ptr<const HN::Pinger> pinger = b.GetPinger();
            bool answered = false;
            std::thread([&answered, pinger, target] { answered = pinger->Ping(target); }).join();
            return answered;
        };
    };
    const auto create = [](const char* group, const char* vswitch) {
        return [=](B b) { return b.GetPortGroupCreator()->CreatePortGroup(group, vswitch); };
    };
    const auto migrate = [](const char* nic, const char* group) {
        return [=](B b) { return b.GetOperationsAgent()->MigrateZrkNic(nic, group); };
    };
    struct Case {
        const char* what;
        std::optional<HostRefusal> arrange;
        std::function<bool(B)> act;
        bool worked;
        std::string ran;
        std::function<bool(B)> changed = {};  // what a working call changes
    };
    const std::string add = "kovacli network vswitch standard portgroup add -p ";
    const std::string move = "/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch -m -p ";
    const Case cases[] = {
        {"the IPv4 gateway", {}, ping("192.168.10.1"), true, "zrkping -c 3 192.168.10.1"},
        {"the IPv6 gateway", {}, ping("2001:db8:10::1"), true, "zrkping -c 3 2001:db8:10::1"},
        {"an address nobody has", {}, ping("192.0.2.1"), false, "zrkping -c 3 192.0.2.1"},
        {"a ping that fails", HostRefusal::Ping, ping("192.168.10.1"), false,
         "zrkping -c 3 192.168.10.1"},
        {"a new port group",
         {},
         create("Backup Net", "zSwitch1"),
         true,
         add + "Backup Net -v zSwitch1",
         [](B b) { return HasGroup(b, "zSwitch1", "Backup Net"); }},
        {"a name another switch has",
         {},
         create("VM Network", "zSwitch1"),
         false,
         add + "VM Network -v zSwitch1"},
        {"a name the switch has",
         {},
         create("Storage Network", "zSwitch1"),
         false,
         add + "Storage Network -v zSwitch1"},
        {"a switch the host lacks",
         {},
         create("Spare Net", "zSwitch9"),
         false,
         add + "Spare Net -v zSwitch9"},
        {"a host that fails a port group", HostRefusal::PortGroupCreation,
         create("Spare Net", "zSwitch0"), false, add + "Spare Net -v zSwitch0"},
        {"a NIC onto a port group",
         {},
         migrate("zrk1", "VM Network"),
         true,
         move + "VM Network -I zrk1",
         [](B b) { return NicGroup(b, "zrk1") == "VM Network"; }},
        {"a port group the host lacks",
         {},
         migrate("zrk1", "No Such Group"),
         false,
         move + "No Such Group -I zrk1"},
        {"a failing move", HostRefusal::Migration, migrate("zrk0", "Storage Network"), false,
         move + "Storage Network -I zrk0"},
        {"an agent that cannot be stopped", HostRefusal::AgentStop, migrate("zrk0", "VM Network"),
         true, move + "VM Network -I zrk0",
         [](B b) { return NicGroup(b, "zrk0") == "VM Network"; }},
    };
    conditions().InstallOperationsAgent("3.1.0-2");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        fixture().Recover();
        if (c.arrange) conditions().Refuse(*c.arrange);
        const std::string before = HostView(host());
        EXPECT_EQ(c.act(host()), c.worked);
        if (c.worked && c.changed)
            EXPECT_TRUE(c.changed(host()));
        else
            EXPECT_EQ(HostView(host()), before);
        EXPECT_EQ(conditions().LastToolRun(), c.ran + (c.worked ? " succeeded" : " failed"));
        EXPECT_TRUE(conditions().OperationsAgentRunning());
    }
}

// Only an agent of major version 3 or later counts; asking changes nothing.
TEST_F(NetworkContract, OperationsAgentCountsFromMajorVersion3) {
    const std::pair<const char*, bool> cases[] = {
        {nullptr, false}, {"2.9.1-1", false}, {"3.1.0-2", true}, {"10.0.0-1", true}};
    for (const auto& [version, present] : cases) {
        SCOPED_TRACE(version ? version : "not installed");
        conditions().InstallOperationsAgent(version);
        EXPECT_EQ(host().GetOperationsAgent()->IsVersion3Present(), present);
        EXPECT_TRUE(conditions().OperationsAgentRunning());
    }
}

}  // namespace
