// The network operations change the simulated host as the network screens
// expect, and the cached objects follow the stale rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "hostctl/exception.h"
#include "hostctl/network.h"
#include "simhost/network.h"
#include "tests/hostctl/fixture.h"

namespace {

using namespace HostCtl::Network;
using namespace ZrkCtl::Network;
using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

class NetworkTest : public TeskTest::HostRootTest {
protected:
    Json Net() { return root().state()["network"]; }
    Json Nic(const std::string& name) {
        Json net = Net();
        for (const auto& n : net["zrkNics"])
            if (n["name"] == name) return n;
        return Json();
    }
    Json Switch(const std::string& name) {
        Json net = Net();
        for (const auto& s : net["standardSwitches"])
            if (s["name"] == name) return s;
        return Json();
    }
    std::vector<std::string> Addresses(const IpConfig& c, Ipv6AddressType type) {
        std::vector<std::string> out;
        for (const auto& n : c.GetIpv6Networks())
            if (n.GetIpv6AddressType() == type) out.push_back(n.GetStringAddress());
        return out;
    }
};

TEST_F(NetworkTest, ManagementInterfaceOfTheDefaultHost) {
    NetworkInfoImpl info;
    info.UpdateManagementInterface();
    auto nic = info.GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_EQ(nic->GetName(), "zrk0");
    EXPECT_TRUE(nic->IsUsable());
    IpConfig current = nic->GetIpConfig();
    EXPECT_EQ(current.GetIpv4Address().GetStringAddress(), "192.168.10.21");
    EXPECT_EQ(current.GetIpv4Gateway().GetStringAddress(), "192.168.10.1");
    EXPECT_EQ(current.GetIpv6Gateway().GetStringAddress(), "2001:db8:10::1");
    EXPECT_EQ(Addresses(current, Ipv6AddressType::Static),
              std::vector<std::string>{"2001:db8:10::21/64"});
    // The link-local address follows the MAC address.
    EXPECT_EQ(Addresses(current, Ipv6AddressType::LinkLayer),
              std::vector<std::string>{"fe80::5a:4bff:fea1:1000/64"});
    EXPECT_FALSE(nic->GetConfiguredIpConfig().GetUseDhcp());
    EXPECT_TRUE(info.IsZrkIpv6Enabled());
}

TEST_F(NetworkTest, ManagementInterfaceThatNoNicHasIsNone) {
    root().editState([](Json& s) { s["network"]["managementInterface"] = "zrk9"; });
    EXPECT_EQ(NetworkInfoImpl().GetManagementInterface(), nullptr);
}

TEST_F(NetworkTest, NicObjectKeepsItsCopyUntilRefreshed) {
    ZrkNicImpl nic("zrk0");
    EXPECT_TRUE(nic.IsStale());
    nic.Refresh();
    EXPECT_FALSE(nic.IsStale());
    // A hand edit of the state makes the copy stale but does not change it.
    root().editState(
        [](Json& s) { s["network"]["zrkNics"][0]["config"]["ipv4Address"] = "192.168.10.99"; });
    EXPECT_TRUE(nic.IsStale());
    EXPECT_EQ(nic.GetIpConfig().GetIpv4Address().GetStringAddress(), "192.168.10.21");
    nic.Refresh();
    EXPECT_EQ(nic.GetIpConfig().GetIpv4Address().GetStringAddress(), "192.168.10.99");
    // A change through the object marks it stale as well.
    nic.InterfaceDown();
    EXPECT_TRUE(nic.IsStale());
    nic.Refresh();
    EXPECT_FALSE(nic.IsUsable());
    nic.InterfaceUp();
    nic.Refresh();
    EXPECT_TRUE(nic.IsUsable());
}

TEST_F(NetworkTest, SwitchingToDhcpTakesTheServersLease) {
    ZrkNicImpl nic("zrk0");
    IpConfig config = nic.GetIpConfig();
    config.SetUseDhcp(true);
    config.SetDhcpDns(true);
    nic.SetIpConfig(config);
    nic.Refresh();
    EXPECT_TRUE(nic.GetConfiguredIpConfig().GetUseDhcp());
    EXPECT_EQ(nic.GetIpConfig().GetIpv4Address().GetStringAddress(), "192.168.10.150");
    EXPECT_EQ(Net()["dns"]["nameServers"], Json::array({"192.168.10.2"}));

    // Without a server, a renewal keeps the lease, a release-and-renew loses it.
    root().editState([](Json& s) { s["network"]["dhcpServer"] = nullptr; });
    nic.RenewDhcp();
    nic.Refresh();
    EXPECT_EQ(nic.GetIpConfig().GetIpv4Address().GetStringAddress(), "192.168.10.150");
    nic.RequestRenewal(true);
    nic.Refresh();
    EXPECT_TRUE(nic.GetIpConfig().GetIpv4Address().IsAnyAddress());
}

TEST_F(NetworkTest, StaticAndNoneIpv4AndStaticIpv6AreStored) {
    ZrkNicImpl nic("zrk0");
    IpConfig config = nic.GetIpConfig();
    config.SetUseDhcp(false, false);
    config.SetIpv4Address(Ipv4Address("192.168.10.40"));
    config.SetIpv4Netmask(Ipv4Address("255.255.0.0"));
    // What the screens hand back still holds the learnt addresses.
    config.AddIpv6Network(Ipv6Network("2001:db8:10::40/64"));
    nic.SetIpConfig(config);
    nic.Refresh();
    IpConfig current = nic.GetIpConfig();
    EXPECT_EQ(current.GetIpv4Netmask().GetStringAddress(), "255.255.0.0");
    EXPECT_EQ(Addresses(current, Ipv6AddressType::Static),
              (std::vector<std::string>{"2001:db8:10::21/64", "2001:db8:10::40/64"}));
    EXPECT_EQ(Addresses(current, Ipv6AddressType::LinkLayer).size(), 1u);
    EXPECT_EQ(Nic("zrk0")["config"]["ipv6Addresses"].size(), 2u) << "only static addresses stored";

    config.SetUseDhcp(false, true);
    nic.SetIpConfig(config);
    nic.Refresh();
    EXPECT_TRUE(nic.GetIpConfig().GetIpv4UseNone());
    EXPECT_TRUE(nic.GetIpConfig().GetIpv4Address().IsAnyAddress());

    IpConfig bad = config;
    bad.SetUseDhcp(false, false);
    bad.SetIpv4Netmask(Ipv4Address("255.0.255.0"));
    EXPECT_THROW(nic.SetIpConfig(bad), HostCtlException);
}

TEST_F(NetworkTest, Ipv6FromRouterAndDhcpv6) {
    ZrkNicImpl nic("zrk0");
    IpConfig config = nic.GetIpConfig();
    config.SetUseIpv6RouterAdvertised(true);
    config.SetUseIpv6Dhcp(true);
    nic.SetIpConfig(config);
    nic.Refresh();
    IpConfig current = nic.GetIpConfig();
    EXPECT_EQ(Addresses(current, Ipv6AddressType::Autoconf),
              std::vector<std::string>{"2001:db8:10:0:5a:4bff:fea1:1000/64"});
    EXPECT_EQ(Addresses(current, Ipv6AddressType::Dhcp),
              std::vector<std::string>{"2001:db8:10::150/64"});

    NetworkInfoImpl info;
    info.SetZrkIpv6Enabled(false);
    EXPECT_TRUE(info.IsZrkIpv6Enabled()) << "the kernel changes only at the next boot";
    EXPECT_FALSE(info.GetZrkIpv6EnabledAfterReboot());
}

TEST_F(NetworkTest, DhcpHostWaitsForItsLease) {
    UseProfile("dhcp");
    auto nic = NetworkInfoImpl().GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_TRUE(nic->GetConfiguredIpConfig().GetUseDhcp());
    EXPECT_TRUE(nic->GetIpConfig().GetIpv4Address().IsAnyAddress());
    root().editState([](Json& s) {
        s["network"]["dhcpServer"] = {{"ipv4Address", "10.1.1.7"},
                                      {"ipv4Netmask", "255.255.255.0"},
                                      {"ipv4Gateway", "10.1.1.1"},
                                      {"hostname", "leased"}};
    });
    nic->RenewDhcp();
    nic->Refresh();
    EXPECT_EQ(nic->GetIpConfig().GetIpv4Address().GetStringAddress(), "10.1.1.7");
    EXPECT_EQ(RoutingInfoImpl().GetZerkelDefaultGateway().GetStringAddress(), "10.1.1.1");
    EXPECT_EQ(DnsConfigImpl().GetHostname(), "leased");
}

TEST_F(NetworkTest, PortGroupUplinksVlanAndClients) {
    PortGroup mgmt = NetworkInfoImpl().GetManagementInterface()->GetPortConnection().GetPortGroup();
    EXPECT_EQ(mgmt.GetVirtualSwitchName(), "zSwitch0");
    EXPECT_EQ(mgmt.GetTeamingPolicy().GetActiveUplinks(),
              (std::vector<std::string>{"pnic0", "pnic1"}));
    EXPECT_EQ(mgmt.GetActiveClients(), 1);

    // pnic2 belongs to zSwitch1: adding it takes it away from there.
    mgmt.AddUplink("pnic2");
    EXPECT_EQ(mgmt.GetTeamingPolicy().GetActiveUplinks(),
              (std::vector<std::string>{"pnic0", "pnic1", "pnic2"}));
    EXPECT_EQ(Switch("zSwitch1")["uplinks"], Json::array());
    EXPECT_EQ(Switch("zSwitch1")["teamingPolicy"]["activeUplinks"], Json::array());

    // The group follows its switch's policy, which "VM Network" shares: the
    // uplink stays on the switch while that group still uses it.
    mgmt.SetTeamingPolicy(mgmt.GetTeamingPolicy());
    mgmt.RemoveUplink("pnic1");
    EXPECT_EQ(Switch("zSwitch0")["uplinks"], Json::array({"pnic0", "pnic1", "pnic2"}));
    PortGroup vm("VM Network", "zSwitch0", PortGroupOperations());
    vm.SetTeamingPolicy(NicTeamingPolicy());
    mgmt.RemoveUplink("pnic2");
    EXPECT_EQ(Switch("zSwitch0")["uplinks"], Json::array({"pnic0", "pnic1"}));
    EXPECT_THROW(mgmt.RemoveUplink("pnic3"), HostCtlException);
    EXPECT_THROW(mgmt.AddUplink("pnic9"), HostCtlException);

    mgmt.SetVlanId(4095);
    EXPECT_EQ(mgmt.GetVlanId(), 4095);
    EXPECT_THROW(mgmt.SetVlanId(4096), HostCtlException);
}

TEST_F(NetworkTest, ConnectionKinds) {
    UseProfile("qds");
    ConnectionPoint qds = ZrkNicImpl("zrk0").GetPortConnection();
    EXPECT_EQ(qds.GetType(), ConnectionType::QdsPort);
    EXPECT_EQ(static_cast<int>(qds.GetType()), 2);
    EXPECT_EQ(qds.GetSwitchName(), "qDS-Prod");
    EXPECT_EQ(qds.GetPortId(), "10");
    try {
        qds.GetPortGroup();
        FAIL() << "a distributed port is no port group";
    } catch (const HostCtlException& e) {
        EXPECT_STREQ(e.what(), "Unsupported zSwitch type");
    }
    root().editState([](Json& s) { s["network"]["zrkNics"][0]["connection"] = nullptr; });
    ConnectionPoint none = ZrkNicImpl("zrk0").GetPortConnection();
    EXPECT_EQ(none.GetType(), ConnectionType::None);
    try {
        none.GetSwitchName();
        FAIL() << "nothing connected has no switch";
    } catch (const HostCtlException& e) {
        EXPECT_STREQ(e.what(), "Unsupported connectee type");
    }
    EXPECT_FALSE(ZrkNicImpl("zrk0").IsUsable());
}

TEST_F(NetworkTest, SafeModeSteps) {
    UseProfile("qds");
    VirtualSwitchInfoImpl switches;
    EXPECT_TRUE(PortsetImpl("zSwitch0").IsValidVirtualSwitch());
    EXPECT_TRUE(PortsetImpl("qDS-Prod").IsValidVirtualSwitch());
    EXPECT_FALSE(PortsetImpl("zSwitch1").IsValidVirtualSwitch());
    EXPECT_THROW(switches.AddVirtualSwitch("zSwitch0"), HostCtlException);
    EXPECT_THROW(switches.AddVirtualSwitch(std::string(32, 'x')), HostCtlException);

    auto added = switches.AddVirtualSwitch("zSwitch1");
    EXPECT_EQ(added->GetNumPorts(), Portset::DEF_NUM_PORTS);
    EXPECT_FALSE(PortGroupImpl("Management Network1").IsValidPortGroup());
    added->AddPortGroup("Management Network1");
    EXPECT_TRUE(PortGroupImpl("Management Network1").IsValidPortGroup());
    EXPECT_THROW(PortsetImpl("zSwitch0").AddPortGroup("Management Network1"), HostCtlException);

    for (auto& nic : ZerkelNicInfoImpl().GetZerkelNics()) nic->Disable();
    ZrkNicImpl mgmt("zrk0");
    mgmt.ConnectToPortGroup("Management Network1");
    EXPECT_THROW(mgmt.ConnectToPortGroup("No Such Group"), HostCtlException);

    for (const auto& q : switches.GetQdsSwitches()) q->RemoveUplink("pnic1");
    added->AddUplink("pnic1");
    auto policy = added->GetTeamingPolicy();
    policy.AddActiveUplink("pnic1");
    added->SetTeamingPolicy(policy);
    EXPECT_THROW(added->AddUplink("pnic2"), HostCtlException) << "pnic2 is still on the qDS";
    mgmt.Enable();

    mgmt.Refresh();
    EXPECT_TRUE(mgmt.IsUsable());
    EXPECT_EQ(mgmt.GetPortConnection().GetSwitchName(), "zSwitch1");
    EXPECT_EQ(added->GetUsedPorts(), 2) << "one uplink and the management NIC";
    EXPECT_EQ(QdsSwitchImpl("qDS-Prod").GetUplinkMap(),
              (std::map<std::string, std::string>{{"pnic2", "uplink2"}}));
    EXPECT_EQ(Nic("zrk0")["enabled"], true);
}

TEST_F(NetworkTest, FactoryResetClearsAndConfiguresAgain) {
    NetworkInfoImpl info;
    info.DisableNetDumper();
    EXPECT_FALSE(info.IsNetDumperEnabled());
    info.ClearNetworkConfig();
    EXPECT_TRUE(Net()["standardSwitches"].empty());
    EXPECT_EQ(info.GetManagementInterface(), nullptr);
    info.AutoConfigNetwork();
    EXPECT_THROW(info.AutoConfigNetwork(), HostCtlException) << "only a cleared network";

    info.UpdateManagementInterface();
    auto nic = info.GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_EQ(nic->GetName(), "zrk0");
    EXPECT_TRUE(nic->IsUsable());
    EXPECT_EQ(nic->GetIpConfig().GetIpv4Address().GetStringAddress(), "192.168.10.150");
    EXPECT_EQ(nic->GetPortConnection().GetPortGroup().GetName(), "Management Network");
    EXPECT_EQ(Switch("zSwitch0")["uplinks"], Json::array({"pnic0"}));
}

TEST_F(NetworkTest, FactoryResetWithoutNicsFails) {
    UseProfile("nonic");
    NetworkInfoImpl info;
    info.ClearNetworkConfig();
    EXPECT_TRUE(info.GetPnics().empty());
    EXPECT_THROW(info.AutoConfigNetwork(), HostCtlException);
}

TEST_F(NetworkTest, PnicListsAndDetails) {
    NetworkInfoImpl info;
    EXPECT_EQ(info.GetPnics(PnicKind::All).size(), 4u);
    EXPECT_EQ(info.GetPnics(PnicKind::Connected).size(), 3u);
    auto unused = info.GetPnics(PnicKind::Unused);
    ASSERT_EQ(unused.size(), 1u);
    EXPECT_EQ(unused[0]->GetName(), "pnic3");
    EXPECT_FALSE(unused[0]->GetPciDevice());

    PnicImpl pnic("pnic0");
    pnic.Refresh();
    EXPECT_EQ(pnic.GetPciDevice()->GetDescription(),
              "Acme Networks X540  10 Gigabit   Network Connection");
    ZrkNicImpl nic("zrk1");
    nic.SetMacAddressFromPnic(pnic);
    EXPECT_EQ(Nic("zrk1")["mac"], "02:5a:4b:a1:10:00");
    EXPECT_THROW(PnicImpl("pnic9").Refresh(), HostCtlException);
}

TEST_F(NetworkTest, RoutingGateways) {
    RoutingInfoImpl routing;
    routing.SetZerkelDefaultGateway(Ipv4Address("192.168.10.254"), false);
    EXPECT_EQ(routing.GetZerkelDefaultGateway().GetStringAddress(), "192.168.10.254");
    EXPECT_THROW(routing.SetZerkelDefaultGateway(Ipv4Address("10.9.9.9"), true), HostCtlException);
    routing.SetZerkelDefaultGateway(Ipv4Address("192.168.10.253"), true);
    routing.SetIpv6ZerkelDefaultGateway(Ipv6Address("fe80::1%zrk0"));
    EXPECT_EQ(routing.GetIpv6ZerkelDefaultGateway().GetScopedStringAddress(), "fe80::1%zrk0");
    EXPECT_THROW(RoutingInfoImpl("otherStack").GetZerkelDefaultGateway(), HostCtlException);
}

TEST_F(NetworkTest, DnsSettings) {
    DnsConfigImpl dns;
    EXPECT_EQ(dns.GetHostname(), "tesk-host01");
    EXPECT_EQ(dns.GetDomain(), "lab.example");
    EXPECT_FALSE(dns.IsStale());

    dns.SetFqdn("zrk7.corp.example", false, "");
    EXPECT_TRUE(dns.IsStale());
    dns.Refresh();
    EXPECT_EQ(dns.GetHostname(), "zrk7");
    EXPECT_EQ(dns.GetDomain(), "corp.example");
    dns.SetHostname("solo", false);
    EXPECT_THROW(dns.SetHostname("bad name", false), HostCtlException);

    dns.RemoveNameServers();
    dns.AddUserNameServer(Ipv4Address("10.0.0.53"));
    dns.AddUserNameServer(Ipv6Address("fe80::53%zrk0"));
    dns.AddUserNameServer(Ipv6Address("2001:db8::53"));
    dns.AddUserNameServer(Ipv4Address("10.0.0.53"));
    dns.SetSearchDomainsString(dns.GetDomain());
    for (const char* d : {"a.example", "b.example", "a.example"}) dns.AddUserSearchDomain(d);
    dns.Refresh();
    ASSERT_EQ(dns.GetNameServers().size(), 1u);
    EXPECT_EQ(dns.GetIpv6NameServers(true).size(), 2u);
    ASSERT_EQ(dns.GetIpv6NameServers(false).size(), 1u);
    EXPECT_EQ(dns.GetIpv6NameServers(false)[0].GetStringAddress(), "2001:db8::53");
    EXPECT_EQ(dns.GetSearchDomains(),
              (std::vector<std::string>{"corp.example", "a.example", "b.example"}));
    dns.SetSearchDomainsString(" x.example,, y.example  z.example");
    dns.Refresh();
    EXPECT_EQ(dns.GetSearchDomains().size(), 3u);

    EXPECT_EQ(Net()["dns"]["saved"]["hostname"], "tesk-host01") << "nothing saved yet";
    dns.SaveConfig();
    EXPECT_EQ(Net()["dns"]["saved"]["hostname"], "solo");
    EXPECT_EQ(Net()["dns"]["saved"]["nameServers"], Json::array({"10.0.0.53"}));
}

TEST_F(NetworkTest, HostsFileLosesOnlyTheName) {
    HostsFileImpl hosts;
    root().writeFile("/etc/hosts",
                     "# hosts\n127.0.0.1\tlocalhost\n192.168.10.21\ttesk-host01.lab.example "
                     "tesk-host01  # the host\n10.0.0.9 TESK-HOST01\n");
    EXPECT_TRUE(hosts.RemoveEntryByHostName("tesk-host01"));
    EXPECT_EQ(root().readFile("/etc/hosts"),
              "# hosts\n127.0.0.1\tlocalhost\n192.168.10.21\ttesk-host01.lab.example # the "
              "host\n");
    EXPECT_FALSE(hosts.RemoveEntryByHostName("nobody"));
    std::filesystem::remove(root().path("/etc/hosts"));
    EXPECT_THROW(hosts.RemoveEntryByHostName("tesk-host01"), HostCtlException);
}

}  // namespace
