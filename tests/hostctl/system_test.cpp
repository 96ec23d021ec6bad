// Hardware, system information, virtual machines, the account store, and
// faults the state asks for.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "hostctl/exception.h"
#include "hostctl/hardware.h"
#include "hostctl/network.h"
#include "hostctl/system.h"
#include "simhost/adv.h"
#include "simhost/hardware.h"
#include "simhost/network.h"
#include "simhost/system.h"
#include "tests/hostctl/fixture.h"

namespace {

using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

class SystemTest : public TeskTest::HostRootTest {};

TEST_F(SystemTest, HardwareFacts) {
    ZrkCtl::Hardware::HardwareInfoImpl hw;
    EXPECT_EQ(hw.GetVendorName(), "Acme Systems Inc.");
    EXPECT_EQ(ZrkCtl::Hardware::CpuInfoImpl().GetNumCpuPackages(), 2);
    ZrkCtl::Hardware::MemoryInfoImpl memory;
    EXPECT_EQ(memory.GetTotalPages() * memory.GetPageSize(), 64ull << 30);
    root().editState([](Json& s) { s["hardware"].erase("cpu"); });
    EXPECT_THROW(ZrkCtl::Hardware::CpuInfoImpl().GetModelName(), HostCtlException);
}

TEST_F(SystemTest, WelcomeMessageAndAlerts) {
    auto info = HostCtl::HostFactory::GetHost()->GetSystemInfo();
    EXPECT_EQ(info->GetWelcomeMessage(), "");
    info->SetWelcomeMessage("{color:red}Lab host{/color}");
    EXPECT_EQ(ZrkCtl::System::SystemInfoImpl().GetWelcomeMessage(), "{color:red}Lab host{/color}");
    info->SetSystemAlert("No compatible network adapter found.");
    info->SetSystemAlert("Hagentd core dump completed");
    EXPECT_EQ(root().state()["systemInfo"]["alerts"],
              Json::array({"No compatible network adapter found.", "Hagentd core dump completed"}));
}

TEST_F(SystemTest, KeyboardLayouts) {
    ZrkCtl::System::SystemInfoImpl info;
    auto layouts = info.GetKeyboardLayouts();
    EXPECT_NE(std::find(layouts.begin(), layouts.end(), "German"), layouts.end());
    EXPECT_EQ(info.GetKeyboardLayout(), "US Default");
    info.LoadKeyboardMappings("German");
    info.SetKeyboardLayout("German");
    EXPECT_EQ(info.GetKeyboardLayout(), "German");
    EXPECT_EQ(root().state()["systemInfo"]["keyboard"]["loadedMappings"], "German");
    EXPECT_THROW(info.SetKeyboardLayout("german"), HostCtlException) << "names are exact";
    EXPECT_THROW(info.LoadKeyboardMappings("Klingon"), HostCtlException);
}

TEST_F(SystemTest, FirewallRulesetTakesEffectOnApply) {
    auto ssh = ZrkCtl::System::SystemInfoImpl().GetFirewallRulesetById("sshServer");
    EXPECT_TRUE(ssh.IsServiceControlled());
    EXPECT_FALSE(ssh.IsEnabled());
    ssh.SetEnabled(true);
    EXPECT_TRUE(ssh.IsEnabled());
    EXPECT_FALSE(ssh.IsActive());
    ssh.Apply();
    EXPECT_TRUE(ssh.IsActive());
    EXPECT_THROW(ZrkCtl::System::SystemInfoImpl().GetFirewallRulesetById("telnet"),
                 HostCtlException);
}

TEST_F(SystemTest, RunningVirtualMachines) {
    ZrkCtl::Resource::ResourceInfoImpl resources;
    EXPECT_EQ(resources.GetRunningVirtualMachines(), std::vector<std::string>{"web01"});
    root().editState([](Json& s) { s["vms"][0]["running"] = false; });
    EXPECT_FALSE(resources.HasRunningVirtualMachines());
}

TEST_F(SystemTest, AccountStoreTakesTheOutcomesInUseAndNoHashes) {
    EXPECT_FALSE(root().stateValue("/users/0/password")) << "no clear text in the state";
    // A state written before the hashes moved out of it loses them.
    root().editState([](Json& s) { s["users"][0]["passwordHash"] = "$y$old"; });
    const std::string hash = TeskTest::PasswordHash("n3w-Secret");
    root().writeFile("/etc/simhost/users",
                     "root:" + hash + ":success\nexpired:" + hash + ":success\n");
    HostCtl::Authentication::StoreUserAccountsToCs();
    const Json expired = root().stateValue("/users/2").value();
    ASSERT_EQ(expired["name"], "expired");
    EXPECT_EQ(expired["outcome"], "success");
    EXPECT_EQ(root().state().dump().find("$y$"), std::string::npos) << root().state()["users"];
    EXPECT_EQ(root().stateValue("/userAccountStore/storeCount"), Json(1));
}

TEST_F(SystemTest, SystemVersionNode) {
    ZSI_SystemVersion version{};
    ZrkCtl::Util::SysinfoUtil::SysinfoGet(ZSI_NODE_system_version, &version, sizeof version);
    EXPECT_STREQ(version.productVersion, "8.0.2");
    EXPECT_THROW(ZrkCtl::Util::SysinfoUtil::SysinfoGet(ZSI_NODE_system_version, &version, 4),
                 HostCtlException);
}

// Every operation group honours a fault set in the state: it throws the
// fault's text and changes nothing.
TEST_F(SystemTest, FaultsArriveAsExceptionsWithTheirText) {
    namespace ZN = ZrkCtl::Network;
    namespace HN = HostCtl::Network;
    const std::vector<std::pair<std::string, std::function<void()>>> operations = {
        {"network.getPnics", [] { ZN::NetworkInfoImpl().GetPnics(); }},
        {"network.getManagementInterface", [] { ZN::NetworkInfoImpl().GetManagementInterface(); }},
        {"network.clearNetworkConfig", [] { ZN::NetworkInfoImpl().ClearNetworkConfig(); }},
        {"network.autoConfigNetwork", [] { ZN::NetworkInfoImpl().AutoConfigNetwork(); }},
        {"network.disableNetDumper", [] { ZN::NetworkInfoImpl().DisableNetDumper(); }},
        {"network.setZrkIpv6Enabled", [] { ZN::NetworkInfoImpl().SetZrkIpv6Enabled(false); }},
        {"zrkNicInfo.getZerkelNics", [] { ZN::ZerkelNicInfoImpl().GetZerkelNics(); }},
        {"zrkNic.setIpConfig", [] { ZN::ZrkNicImpl("zrk0").SetIpConfig(HN::IpConfig()); }},
        {"zrkNic.interfaceDown", [] { ZN::ZrkNicImpl("zrk0").InterfaceDown(); }},
        {"zrkNic.renewDhcp", [] { ZN::ZrkNicImpl("zrk0").RenewDhcp(); }},
        {"zrkNic.disable", [] { ZN::ZrkNicImpl("zrk0").Disable(); }},
        {"zrkNic.refresh", [] { ZN::ZrkNicImpl("zrk0").Refresh(); }},
        {"pnic.refresh", [] { ZN::PnicImpl("pnic0").Refresh(); }},
        {"portGroup.getTeamingPolicy",
         [] {
             HN::PortGroup("Management Network", "zSwitch0", ZN::PortGroupOperations())
                 .GetTeamingPolicy();
         }},
        {"portGroup.setVlanId",
         [] {
             HN::PortGroup("Management Network", "zSwitch0", ZN::PortGroupOperations())
                 .SetVlanId(5);
         }},
        {"portGroup.addUplink",
         [] {
             HN::PortGroup("Management Network", "zSwitch0", ZN::PortGroupOperations())
                 .AddUplink("pnic3");
         }},
        {"vswitchInfo.getVirtualSwitches",
         [] { ZN::VirtualSwitchInfoImpl().GetVirtualSwitches(); }},
        {"vswitchInfo.getQdsSwitches", [] { ZN::VirtualSwitchInfoImpl().GetQdsSwitches(); }},
        {"vswitchInfo.addVirtualSwitch",
         [] { ZN::VirtualSwitchInfoImpl().AddVirtualSwitch("zS9"); }},
        {"vswitch.addUplink", [] { ZN::PortsetImpl("zSwitch0").AddUplink("pnic3"); }},
        {"routing.setZerkelDefaultGateway",
         [] { ZN::RoutingInfoImpl().SetZerkelDefaultGateway(HN::Ipv4Address("192.168.10.9")); }},
        {"dns.getHostname", [] { ZN::DnsConfigImpl().GetHostname(); }},
        {"dns.saveConfig", [] { ZN::DnsConfigImpl().SaveConfig(); }},
        {"hostsFile.removeEntryByHostName",
         [] { ZN::HostsFileImpl().RemoveEntryByHostName("tesk-host01"); }},
        {"hardware.getVendorName", [] { ZrkCtl::Hardware::HardwareInfoImpl().GetVendorName(); }},
        {"memory.getTotalPages", [] { ZrkCtl::Hardware::MemoryInfoImpl().GetTotalPages(); }},
        {"system.getWelcomeMessage", [] { ZrkCtl::System::SystemInfoImpl().GetWelcomeMessage(); }},
        {"system.setKeyboardLayout",
         [] { ZrkCtl::System::SystemInfoImpl().SetKeyboardLayout("German"); }},
        {"firewall.apply",
         [] {
             HostCtl::System::FirewallRuleset("sshServer", ZrkCtl::System::FirewallOperations())
                 .Apply();
         }},
        {"resource.hasRunningVirtualMachines",
         [] { ZrkCtl::Resource::ResourceInfoImpl().HasRunningVirtualMachines(); }},
        {"authentication.storeUserAccountsToCs",
         [] { HostCtl::Authentication::StoreUserAccountsToCs(); }},
    };
    for (const auto& [name, call] : operations) {
        SCOPED_TRACE(name);
        root().setFault(name, {{"exception", "Injected: " + name}});
        Json before = root().state();
        try {
            call();
            ADD_FAILURE() << "no exception";
        } catch (const HostCtlException& e) {
            EXPECT_EQ(e.what(), "Injected: " + name);
        }
        root().setFault(name, nullptr);
        Json after = root().state();
        before.erase("faults");
        after.erase("faults");
        EXPECT_EQ(before, after);
    }
}

}  // namespace
