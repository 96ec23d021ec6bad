// What every host backend must do for the network screens' host actions: the
// echo test of the management network test, new port groups on standard
// switches, and the network-virtualisation operations agent (its version and
// the move of a Zerkel NIC). The cases speak to the backend only through the
// host-control interfaces; what only one backend can arrange or show (how to
// make a step fail, which tool ran) goes through its host helper, the one
// piece a second backend replaces. SimulatedNetworkHost is the simulated
// host's.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "hostctl/backend.h"
#include "platform/host_platform.h"
#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#include "tests/harness/sim_root.h"

namespace TeskTest {
namespace {

namespace HN = HostCtl::Network;

// --- The simulated host ----------------------------------------------------
// Everything the cases need that the interfaces cannot do: a fresh host, the
// conditions a case asks for, and what the host's tools show afterwards.

class SimulatedNetworkHost {
public:
    SimulatedNetworkHost() {
        Tesk::Platform::SetHostRootForTesting(root_.path());
        // The root's own log, where the tools' lines are read back.
        Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());
        backend_ = ZrkCtl::MakeSimulatedBackend();
    }
    ~SimulatedNetworkHost() {
        Tesk::Platform::InstallHostPlatform(nullptr);
        Tesk::Platform::SetHostRootForTesting("");
    }

    const HostCtl::Backend& backend() const { return *backend_; }

    // Conditions. Heal() takes back every Break...().
    void Heal() const {
        root_.editState([](Json& s) { s["faults"] = Json::object(); });
    }
    void BreakPing() const { root_.setFault("zrkping", {{"exitStatus", 2}}); }
    void BreakPortGroupCreation() const {
        root_.setFault("kovacli.portgroup.add", {{"exitStatus", 1}});
    }
    // The agent's package at this version (null: not installed).
    void InstallAgent(const char* version) const {
        root_.editState([&](Json& s) {
            if (version)
                s["vibs"]["plex-opsagent"] = {{"version", version}};
            else if (s.contains("vibs"))
                s["vibs"].erase("plex-opsagent");
        });
    }
    void BreakAgentStop() const { root_.setFault("plex-opsagent:stop", {{"exitStatus", 1}}); }
    void BreakMigration() const { root_.setFault("plexcfg-vswitch", {{"exitStatus", 1}}); }

    // Observations.
    bool AgentRunning() const {
        return root_.stateValue("/services/plex-opsagent/running").value_or(Json(true)) == true;
    }
    // The last tool run logged as a command ("Command \"<line>\" ...") names line
    // and ended as expected.
    ::testing::AssertionResult Ran(const std::string& line, bool succeeded) const {
        const auto runs = root_.logLinesWith("Command \"");
        if (runs.empty()) return ::testing::AssertionFailure() << "no tool ran";
        const std::string& last = runs.back();
        const std::string expected =
            "Command \"" + line + "\" " + (succeeded ? "succeeded" : "failed");
        if (last.find(expected) != std::string::npos) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "last run: " << last << "\nexpected: " << expected;
    }

private:
    SimRoot root_;
    std::unique_ptr<HostCtl::Backend> backend_;
};

// --- The contract ----------------------------------------------------------

using Host = SimulatedNetworkHost;

class NetworkContract : public ::testing::Test {
protected:
    const HostCtl::Backend& backend() const { return host_.backend(); }
    Host host_;
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
        void (Host::*arrange)() const;
        bool answered;
    };
    const Case cases[] = {
        {"the IPv4 gateway", "192.168.10.1", nullptr, true},
        {"the IPv6 gateway", "2001:db8:10::1", nullptr, true},
        {"an address nobody has", "192.0.2.1", nullptr, false},
        {"a text that is no address", "no-such-address", nullptr, false},
        {"a ping that fails", "192.168.10.1", &Host::BreakPing, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        host_.Heal();
        if (c.arrange) (host_.*c.arrange)();
        const auto before = NicPortGroups(backend());
        std::shared_ptr<const HN::Pinger> pinger = backend().GetPinger();
        bool answered = !c.answered;
        std::thread([&answered, pinger, target = std::string(c.target)] {
            answered = pinger->Ping(target);
        }).join();
        EXPECT_EQ(answered, c.answered);
        EXPECT_EQ(NicPortGroups(backend()), before);
        EXPECT_TRUE(host_.Ran(std::string("zrkping -c 3 ") + c.target, c.answered));
    }
}

// A new port group lands on the switch it was asked for; every refusal leaves
// all switches' port groups as they were.
TEST_F(NetworkContract, CreatePortGroupAddsOnlyANewNameToAnExistingSwitch) {
    struct Case {
        const char* what;
        const char* group;
        const char* vswitch;
        void (Host::*arrange)() const;
        bool created;
    };
    const Case cases[] = {
        {"a new name", "Backup Net", "zSwitch1", nullptr, true},
        {"a name another switch has", "VM Network", "zSwitch1", nullptr, false},
        {"a name the switch has", "Storage Network", "zSwitch1", nullptr, false},
        {"a switch the host lacks", "Spare Net", "zSwitch9", nullptr, false},
        {"a host that fails it", "Spare Net", "zSwitch0", &Host::BreakPortGroupCreation, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        host_.Heal();
        if (c.arrange) (host_.*c.arrange)();
        auto expected = PortGroups(backend());
        if (c.created) expected[c.vswitch].insert(c.group);

        EXPECT_EQ(backend().GetPortGroupCreator()->CreatePortGroup(c.group, c.vswitch), c.created);
        EXPECT_EQ(PortGroups(backend()), expected);
        EXPECT_TRUE(host_.Ran(std::string("kovacli network vswitch standard portgroup add -p ") +
                                  c.group + " -v " + c.vswitch,
                              c.created));
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
        host_.InstallAgent(c.version);
        EXPECT_EQ(backend().GetOperationsAgent()->IsVersion3Present(), c.present);
        EXPECT_EQ(host_.AgentRunning(), true);
    }
}

// The move connects the NIC to the port group or leaves every NIC where it
// was; either way an agent that ran before runs afterwards.
TEST_F(NetworkContract, MigrateZrkNicMovesTheNicAroundTheStoppedAgent) {
    struct Case {
        const char* what;
        const char* nic;
        const char* group;
        void (Host::*arrange)() const;
        bool migrated;
    };
    const Case cases[] = {
        {"a NIC onto a port group", "zrk1", "VM Network", nullptr, true},
        {"a port group the host lacks", "zrk1", "No Such Group", nullptr, false},
        {"a NIC the host lacks", "zrk9", "VM Network", nullptr, false},
        {"a failing move", "zrk0", "Storage Network", &Host::BreakMigration, false},
        {"an agent that cannot be stopped", "zrk0", "VM Network", &Host::BreakAgentStop, true},
    };
    host_.InstallAgent("3.1.0-2");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        host_.Heal();
        if (c.arrange) (host_.*c.arrange)();
        auto expected = NicPortGroups(backend());
        if (c.migrated) expected[c.nic] = c.group;

        EXPECT_EQ(backend().GetOperationsAgent()->MigrateZrkNic(c.nic, c.group), c.migrated);
        EXPECT_EQ(NicPortGroups(backend()), expected);
        EXPECT_TRUE(host_.AgentRunning());
        EXPECT_TRUE(
            host_.Ran(std::string("/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch -m -p ") +
                          c.group + " -I " + c.nic,
                      c.migrated));
    }
}

}  // namespace
}  // namespace TeskTest
