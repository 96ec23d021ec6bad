// The contract of the network stack's settings: RoutingInfo (default
// gateways), DnsConfig (host name, domain, name servers, search domains) and
// the Resolver.
#include "tests/contract/contract.h"

namespace {

using namespace HostCtl::Network;
using namespace TeskContract;
using HostCtl::Backend;

constexpr char kStack[] = "defaultNetStack";

class DnsContract : public OnManagedHost {};

std::vector<std::string> Texts(const std::vector<Ipv6Address>& addresses) {
    std::vector<std::string> texts;
    for (const auto& a : addresses) texts.push_back(a.GetScopedStringAddress());
    return texts;
}

TEST_F(DnsContract, GatewaysAreKeptAsGiven) {
    auto routing = host().GetRoutingInfo(kStack);
    const IpConfig management = Management(host())->GetIpConfig();
    // Another address of the management interface's subnet.
    const Ipv4Address inside =
        Ipv4Address::FromHostOrder(management.GetIpv4Address().GetAddress() ^ 2);
    routing->SetZerkelDefaultGateway(inside, true);
    EXPECT_EQ(routing->GetZerkelDefaultGateway(), inside);
    // A link-local gateway, on the management interface's link.
    const std::string linkLocal = "fe80::1%" + Management(host())->GetName();
    routing->SetIpv6ZerkelDefaultGateway(Ipv6Address(linkLocal));
    EXPECT_EQ(routing->GetIpv6ZerkelDefaultGateway().GetScopedStringAddress(), linkLocal);

    const Ipv4Address outside = Ipv4Address::FromHostOrder(inside.GetAddress() ^ 0x80000000u);
    ExpectRefused({
        {"a gateway outside the management subnet",
         [&](const Backend& b) {
             b.GetRoutingInfo(kStack)->SetZerkelDefaultGateway(outside, true);
         }},
        {"the gateways of a stack the host lacks",
         [](const Backend& b) { b.GetRoutingInfo("noSuchStack")->GetZerkelDefaultGateway(); }},
        {"the DNS settings of a stack the host lacks",
         [](const Backend& b) { b.GetDnsConfig("noSuchStack")->Refresh(); }},
    });
    Need(Capability::OffSubnetGateways);
    if (IsSkipped()) return;
    routing->SetZerkelDefaultGateway(outside, false);
    EXPECT_EQ(routing->GetZerkelDefaultGateway(), outside) << "no check asked for";
}

// Reads answer from the object's copy; changes reach the host at once and
// make every copy stale.
TEST_F(DnsContract, SettingsAnswerFromTheCopyUntilRefreshed) {
    auto reader = host().GetDnsConfig(kStack);
    auto writer = host().GetDnsConfig(kStack);
    EXPECT_TRUE(reader->IsStale());
    reader->Refresh();
    EXPECT_FALSE(reader->IsStale());
    const std::string before = reader->GetHostname();

    writer->SetFqdn("zrk7.corp.example", false, "");
    EXPECT_TRUE(writer->IsStale());
    EXPECT_TRUE(reader->IsStale());
    EXPECT_EQ(reader->GetHostname(), before);
    reader->Refresh();
    EXPECT_EQ(reader->GetHostname(), "zrk7");
    EXPECT_EQ(reader->GetDomain(), "corp.example");

    writer->SetFqdn("zrk8.corp.example", true, "other.example");
    writer->Refresh();
    EXPECT_EQ(writer->GetHostname(), "zrk8");
    EXPECT_EQ(writer->GetDomain(), "other.example");
    writer->SetHostname("solo", true);
    writer->Refresh();
    EXPECT_EQ(writer->GetHostname(), "solo");
    EXPECT_EQ(writer->GetDomain(), "other.example");
}

TEST_F(DnsContract, NameServersAndSearchDomainsAreKeptOnceAndNoInvalidNameResolves) {
    auto dns = host().GetDnsConfig(kStack);
    dns->RemoveNameServers();
    dns->Refresh();
    EXPECT_TRUE(dns->GetNameServers().empty());
    EXPECT_TRUE(dns->GetIpv6NameServers(true).empty());

    for (const char* server : {"10.0.0.53", "fe80::53%zrk0", "2001:db8::53", "10.0.0.53"})
        dns->AddUserNameServer(*IpAddress::Parse(server));
    dns->Refresh();
    ASSERT_EQ(dns->GetNameServers().size(), 1u);
    EXPECT_EQ(dns->GetNameServers()[0].GetStringAddress(), "10.0.0.53");
    EXPECT_EQ(Texts(dns->GetIpv6NameServers(true)),
              (std::vector<std::string>{"fe80::53%zrk0", "2001:db8::53"}));
    EXPECT_EQ(Texts(dns->GetIpv6NameServers(false)), std::vector<std::string>{"2001:db8::53"});

    dns->SetSearchDomainsString(" x.example,, y.example  z.example");
    for (const char* domain : {"a.example", "x.example", "a.example"})
        dns->AddUserSearchDomain(domain);
    dns->SaveConfig();
    dns->Refresh();
    EXPECT_EQ(dns->GetSearchDomains(),
              (std::vector<std::string>{"x.example", "y.example", "z.example", "a.example"}));
    EXPECT_FALSE(host().GetResolver(kStack)->Resolve("no-such-host.invalid"));
}

TEST_F(DnsContract, RefusedNamesLeaveTheHostAlone) {
    auto dns = [](void (*call)(DnsConfig&)) {
        return [call](const Backend& b) { call(*b.GetDnsConfig(kStack)); };
    };
    ExpectRefused({
        {"a host name with a blank", dns([](DnsConfig& d) { d.SetHostname("bad name", false); })},
        {"a host name with a dot", dns([](DnsConfig& d) { d.SetHostname("a.example", false); })},
        {"a name with a blank",
         dns([](DnsConfig& d) { d.SetFqdn("bad name.example", false, ""); })},
        {"a domain with a blank",
         dns([](DnsConfig& d) { d.SetFqdn("host", false, "bad domain"); })},
        {"an empty search domain", dns([](DnsConfig& d) { d.AddUserSearchDomain(""); })},
    });
}

}  // namespace
