// The management network's networkd files for every mode, against golden
// files (TESK_UPDATE_GOLDEN=1 writes them anew), and read back to the same
// configuration; resolv.conf read and written.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "linuxhost/networkd_config.h"
#include "linuxhost/resolv_conf.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;

std::string Concatenate(const NetworkdFiles& files) {
    std::string text;
    for (const auto& [name, content] : files) text += "==> " + name + " <==\n" + content;
    return text;
}

ManagementConfig Base() {
    ManagementConfig c;
    c.bridge = "br0";
    c.mac = "02:7e:5c:00:00:10";
    c.uplinks = {"eth0"};
    return c;
}

struct Mode {
    const char* name;
    ManagementConfig config;
};

std::vector<Mode> Modes() {
    std::vector<Mode> modes;
    {
        ManagementConfig c = Base();
        c.ip.SetUseDhcp(false, true);
        modes.push_back({"ipv4-none-ipv6-off", c});
    }
    {
        ManagementConfig c = Base();
        c.ip.SetUseDhcp(true);
        c.ip.SetDhcpDns(true);
        c.ip.EnableIpv6();
        c.ip.SetUseIpv6RouterAdvertised(true);
        modes.push_back({"dhcp-slaac", c});
    }
    {
        ManagementConfig c = Base();
        c.ip.SetUseDhcp(false, false);
        c.ip.SetIpv4Address(HN::Ipv4Address("192.168.77.20"));
        c.ip.SetIpv4Netmask(HN::Ipv4Address("255.255.255.0"));
        c.ip.SetIpv4Gateway(HN::Ipv4Address("192.168.77.1"));
        c.ip.EnableIpv6();
        c.ip.SetUseIpv6Dhcp(true);
        c.nameServers = {"192.168.77.1", "fd77::1"};
        c.searchDomains = {"lab.test", "example.org"};
        modes.push_back({"static-gateway-dhcpv6-dns", c});
    }
    {
        ManagementConfig c = Base();
        c.uplinks = {"eth1", "eth2"};
        c.ip.SetUseDhcp(true);
        c.ip.EnableIpv6();
        c.ip.SetUseIpv6RouterAdvertised(true);
        c.ip.SetUseIpv6Dhcp(true);
        c.ip.AddIpv6Network(HN::Ipv6Network("2001:db8::5/64"));
        c.ip.SetIpv6Gateway(HN::Ipv6Address("2001:db8::1"));
        modes.push_back({"dhcp-ipv6-static-gateway-two-uplinks", c});
    }
    {
        // A gateway outside the subnet goes into a route of its own.
        ManagementConfig c = Base();
        c.ip.SetUseDhcp(false, false);
        c.ip.SetIpv4Address(HN::Ipv4Address("192.168.77.20"));
        c.ip.SetIpv4Netmask(HN::Ipv4Address("255.255.255.0"));
        c.ip.SetIpv4Gateway(HN::Ipv4Address("10.9.0.1"));
        modes.push_back({"static-off-subnet-gateway", c});
    }
    {
        ManagementConfig c = Base();
        c.vlanId = 42;
        c.ip.SetUseDhcp(false, false);
        c.ip.SetIpv4Address(HN::Ipv4Address("10.0.42.5"));
        c.ip.SetIpv4Netmask(HN::Ipv4Address("255.255.0.0"));
        modes.push_back({"vlan-static", c});
    }
    return modes;
}

TEST(NetworkdFiles, EveryModeRendersItsGoldenFilesAndReadsBack) {
    const bool update = std::getenv("TESK_UPDATE_GOLDEN") != nullptr;
    for (const auto& mode : Modes()) {
        SCOPED_TRACE(mode.name);
        const NetworkdFiles files = RenderNetworkd(mode.config);
        const std::string path = std::string(TESK_GOLDEN_DIR) + "/" + mode.name + ".txt";
        if (update) std::ofstream(path) << Concatenate(files);
        std::ifstream golden(path);
        ASSERT_TRUE(golden) << path;
        std::stringstream expected;
        expected << golden.rdbuf();
        EXPECT_EQ(Concatenate(files), expected.str());

        // Another file of the host's and another bridge's are not ours to read.
        NetworkdFiles withOthers = files;
        withOthers["10-other.network"] = "[Match]\nName=eth9\n[Network]\nDHCP=no\n";
        const auto back = ParseNetworkd(withOthers, "br0");
        ASSERT_TRUE(back.has_value());
        EXPECT_EQ(Concatenate(RenderNetworkd(*back)), Concatenate(files));
        EXPECT_FALSE(ParseNetworkd(files, "br1").has_value());
    }
}

TEST(ResolvConf, KeepsOtherLinesAndTakesTheLastSearchList) {
    const ResolvConf conf = ParseResolvConf(
        "# comment\ndomain old.test\nsearch lab.test example.org\nnameserver 192.168.77.1\n"
        "options ndots:2\nnameserver fd77::1\n");
    EXPECT_EQ(conf.search, (std::vector<std::string>{"lab.test", "example.org"}));
    EXPECT_EQ(conf.nameServers, (std::vector<std::string>{"192.168.77.1", "fd77::1"}));
    const ResolvConf again = ParseResolvConf(FormatResolvConf(conf));
    EXPECT_EQ(again.search, conf.search);
    EXPECT_EQ(again.nameServers, conf.nameServers);
    EXPECT_EQ(again.otherLines, (std::vector<std::string>{"options ndots:2"}));
}

}  // namespace
}  // namespace LinuxHost
