// Host state of the wrong kind: each wrong value fails the query that reads
// it with the host-control exception, naming the value, while every other
// query still answers.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/nox.h"
#include "platform/zsi.h"
#include "tests/hostctl/fixture.h"

namespace {

using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

class BadStateTest : public TeskTest::HostRootTest {
protected:
    HostCtl::Backend& host() { return HostCtl::TheBackend(); }

    // The query fails with the host-control exception, its text holding
    // `named`.
    void ExpectFails(const std::function<void()>& query, const std::string& named) {
        try {
            query();
            ADD_FAILURE() << "no failure; expected one naming " << named;
        } catch (const HostCtlException& e) {
            EXPECT_NE(std::string(e.what()).find(named), std::string::npos) << e.what();
        } catch (const std::exception& e) {
            ADD_FAILURE() << "not a host failure: " << e.what();
        }
    }
};

TEST_F(BadStateTest, WrongKindsFailTheirOwnQueryOnly) {
    root().editState([](Json& s) {
        s["network"]["dns"]["hostname"] = 42;
        s["hardware"]["cpu"]["packages"] = "two";
        s["hardware"]["memory"]["pageSize"] = -4096;
        s["systemInfo"]["welcomeMessage"] = Json::array({"hi"});
        s["systemInfo"]["keyboard"]["layouts"] = {"US Default", 7};
        s["advancedOptions"]["/UserVars/TeskTimeOut"] = {{"type", 5}, {"value", 300}};
    });
    auto dns = host().GetDnsConfig("defaultNetStack");
    ExpectFails([&] { dns->GetHostname(); }, "'hostname' is number, expected string");
    EXPECT_EQ(dns->GetDomain(), "lab.example");
    ExpectFails([&] { host().GetCpuInfo()->GetNumCpuPackages(); }, "'packages'");
    EXPECT_NE(host().GetCpuInfo()->GetModelName(), "");
    ExpectFails([&] { host().GetMemoryInfo()->GetPageSize(); },
                "'pageSize' is -4096, out of range");
    EXPECT_GT(host().GetMemoryInfo()->GetTotalPages(), 0u);
    auto info = host().GetSystemInfo();
    ExpectFails([&] { info->GetWelcomeMessage(); }, "'welcomeMessage' is array");
    ExpectFails([&] { info->GetKeyboardLayouts(); }, "'layouts' is number");
    EXPECT_NE(info->GetKeyboardLayout(), "");
    ExpectFails([&] { host().GetAdvancedOptions()->GetOption("/UserVars/TeskTimeOut"); },
                "'type' is number");
    EXPECT_EQ(host().GetHardwareInfo()->GetVendorName(), "Acme Systems Inc.");
}

TEST_F(BadStateTest, WrongListsAndSectionsFailTheQueriesThatReadThem) {
    root().editState([](Json& s) {
        s["network"]["pnics"].push_back("pnic9");
        s["network"]["routing"] = "none";
        s["smartCards"] = {{"slots", {{{"name", 1}}}}};
        s["vms"] = {{{"name", "web01"}, {"running", "yes"}}};
    });
    auto network = host().GetNetworkInfo();
    ExpectFails([&] { network->GetPnics(); }, "'pnics' is string, expected object in the list");
    ExpectFails([&] { host().GetRoutingInfo("defaultNetStack")->GetZerkelDefaultGateway(); },
                "'routing' is string");
    ExpectFails([&] { host().GetSmartCardInfo()->GetAllSlots(); }, "'name' is number");
    ExpectFails([&] { host().GetResourceInfo()->HasRunningVirtualMachines(); }, "'running'");
    EXPECT_EQ(host()
                  .GetVirtualSwitchInfo()
                  ->GetVirtualSwitches(HostCtl::Network::PortsetKind::All)
                  .size(),
              2u);
    EXPECT_TRUE(network->IsZrkIpv6Enabled());
}

TEST_F(BadStateTest, FaultsAndPlatformNodesOfTheWrongKindFailQuietly) {
    // A fault whose text is no text still fails its operation, as a fault.
    root().editState([](Json& s) {
        s["faults"]["dns.getDomain"] = {{"exception", 42}};
        s["faults"]["noxUserLib.init"] = {{"errorCode", "seven"}};
        s["system"]["productName"] = Json::array();
        s["bootOption"]["auditMode"] = "yes";
    });
    ExpectFails([&] { host().GetDnsConfig("defaultNetStack")->GetDomain(); }, "'exception'");
    EXPECT_NE(NoxUserLib_Init(), 0);
    ZSI_SystemVersion version{};
    EXPECT_NE(ZSI_Get(ZSI_NODE_system_version, &version, sizeof version), 0);
    unsigned char boot[4] = {};
    EXPECT_NE(ZSI_Get(ZSI_NODE_system_bootOption, boot, sizeof boot), 0);
    EXPECT_NE(root().readFile("/var/log/syslog.log").find("'auditMode' is string"),
              std::string::npos);
}

TEST_F(BadStateTest, NumbersMustFitTheirType) {
    root().editState([](Json& s) {
        s["hardware"]["cpu"]["packages"] = 5000000000LL;
        s["hardware"]["memory"]["totalPages"] = 1.5;
        s["network"]["standardSwitches"][0]["numPorts"] = "many";
    });
    ExpectFails([&] { host().GetCpuInfo()->GetNumCpuPackages(); }, "out of range");
    ExpectFails([&] { host().GetMemoryInfo()->GetTotalPages(); }, "expected integer");
    auto switches =
        host().GetVirtualSwitchInfo()->GetVirtualSwitches(HostCtl::Network::PortsetKind::All);
    ExpectFails([&] { switches[0]->GetNumPorts(); }, "'numPorts' is string");
    EXPECT_EQ(switches[1]->GetNumPorts(), 128);
}

}  // namespace
