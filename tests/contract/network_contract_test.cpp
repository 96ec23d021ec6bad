// What every host backend must do for the network screens' host actions: the
// echo test of the management network test, new port groups on standard
// switches, and the network-virtualisation operations agent (its version and
// the move of a Zerkel NIC).
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include "tests/contract/contract.h"

namespace {

using namespace TeskContract;
namespace HN = HostCtl::Network;

class NetworkContract : public OnManagedHostWithConditions {
protected:
    // Recovers from the last case, then makes the host refuse what, if given.
    void Arrange(std::optional<HostRefusal> what) {
        fixture().Recover();
        if (what) conditions().Refuse(*what);
    }
    // The last tool run names line and ended as expected.
    void ExpectRan(const std::string& line, bool succeeded) {
        EXPECT_EQ(conditions().LastToolRun(), line + (succeeded ? " succeeded" : " failed"));
    }
};

// Every standard switch's port groups, by switch.
std::map<std::string, std::set<std::string>> PortGroups(const HostCtl::Backend& backend) {
    std::map<std::string, std::set<std::string>> groups;
    for (const auto& vswitch : backend.GetVirtualSwitchInfo()->GetVirtualSwitches()) {
        const auto names = vswitch->GetPortGroups();
        groups[vswitch->GetName()] = {names.begin(), names.end()};
    }
    return groups;
}

// Every Zerkel NIC's port group ("" when it is on none).
std::map<std::string, std::string> NicPortGroups(const HostCtl::Backend& backend) {
    std::map<std::string, std::string> groups;
    for (const auto& nic : backend.GetZerkelNicInfo()->GetZerkelNics(HN::PortsetKind::All)) {
        const HN::ConnectionPoint point = nic->GetPortConnection();
        groups[nic->GetName()] =
            point.GetType() == HN::ConnectionType::PortGroup ? point.GetPortGroup().GetName() : "";
    }
    return groups;
}

// The echo test answers whether the target answered, from a worker thread,
// with an object made before the thread started; a failure is an answer, not
// an exception.
TEST_F(NetworkContract, PingAnswersWhetherTheTargetAnswered) {
    struct Case {
        const char* what;
        const char* target;
        std::optional<HostRefusal> arrange;
        bool answered;
    };
    const Case cases[] = {
        {"the IPv4 gateway", "192.168.10.1", {}, true},
        {"the IPv6 gateway", "2001:db8:10::1", {}, true},
        {"an address nobody has", "192.0.2.1", {}, false},
        {"a ping that fails", "192.168.10.1", HostRefusal::Ping, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Arrange(c.arrange);
        const auto before = NicPortGroups(host());
        std::shared_ptr<const HN::Pinger> pinger = host().GetPinger();
        bool answered = !c.answered;
        std::thread([&answered, pinger, target = std::string(c.target)] {
            answered = pinger->Ping(target);
        }).join();
        EXPECT_EQ(answered, c.answered);
        EXPECT_EQ(NicPortGroups(host()), before);
        ExpectRan(std::string("zrkping -c 3 ") + c.target, c.answered);
    }
}

// A new port group lands on the switch it was asked for; every refusal leaves
// all switches' port groups as they were.
TEST_F(NetworkContract, CreatePortGroupAddsOnlyANewNameToAnExistingSwitch) {
    struct Case {
        const char* what;
        const char* group;
        const char* vswitch;
        std::optional<HostRefusal> arrange;
        bool created;
    };
    const Case cases[] = {
        {"a new name", "Backup Net", "zSwitch1", {}, true},
        {"a name another switch has", "VM Network", "zSwitch1", {}, false},
        {"a name the switch has", "Storage Network", "zSwitch1", {}, false},
        {"a switch the host lacks", "Spare Net", "zSwitch9", {}, false},
        {"a host that fails it", "Spare Net", "zSwitch0", HostRefusal::PortGroupCreation, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Arrange(c.arrange);
        auto expected = PortGroups(host());
        if (c.created) expected[c.vswitch].insert(c.group);

        EXPECT_EQ(host().GetPortGroupCreator()->CreatePortGroup(c.group, c.vswitch), c.created);
        EXPECT_EQ(PortGroups(host()), expected);
        ExpectRan(std::string("kovacli network vswitch standard portgroup add -p ") + c.group +
                      " -v " + c.vswitch,
                  c.created);
    }
}

// Only an agent of major version 3 or later counts; asking changes nothing.
TEST_F(NetworkContract, OperationsAgentCountsFromMajorVersion3) {
    struct Case {
        const char* version;
        bool present;
    };
    const Case cases[] = {
        {nullptr, false}, {"2.9.1-1", false}, {"3.1.0-2", true}, {"10.0.0-1", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.version ? c.version : "not installed");
        conditions().InstallOperationsAgent(c.version);
        EXPECT_EQ(host().GetOperationsAgent()->IsVersion3Present(), c.present);
        EXPECT_EQ(conditions().OperationsAgentRunning(), true);
    }
}

// The move connects the NIC to the port group or leaves every NIC where it
// was; either way an agent that ran before runs afterwards.
TEST_F(NetworkContract, MigrateZrkNicMovesTheNicAroundTheStoppedAgent) {
    struct Case {
        const char* what;
        const char* nic;
        const char* group;
        std::optional<HostRefusal> arrange;
        bool migrated;
    };
    const Case cases[] = {
        {"a NIC onto a port group", "zrk1", "VM Network", {}, true},
        {"a port group the host lacks", "zrk1", "No Such Group", {}, false},
        {"a failing move", "zrk0", "Storage Network", HostRefusal::Migration, false},
        {"an agent that cannot be stopped", "zrk0", "VM Network", HostRefusal::AgentStop, true},
    };
    conditions().InstallOperationsAgent("3.1.0-2");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Arrange(c.arrange);
        auto expected = NicPortGroups(host());
        if (c.migrated) expected[c.nic] = c.group;

        EXPECT_EQ(host().GetOperationsAgent()->MigrateZrkNic(c.nic, c.group), c.migrated);
        EXPECT_EQ(NicPortGroups(host()), expected);
        EXPECT_TRUE(conditions().OperationsAgentRunning());
        ExpectRan(std::string("/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch -m -p ") +
                      c.group + " -I " + c.nic,
                  c.migrated);
    }
}

}  // namespace
