// Applying the management network's DNS settings: host name and name servers
// (only when they are not obtained by DHCP), the search domains, and saving
// what is now running so that it survives a restart.
#include <cctype>
#include <string>
#include <vector>

#include "network/apply_steps.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

std::string ServerText(const HN::IpAddress* server) {
    if (!server) return {};
    if (server->IsIpv6())
        return static_cast<const HN::Ipv6Address&>(*server).GetScopedStringAddress();
    return server->GetStringAddress();
}

// 0.0.0.0 and "::" stand for no server.
bool IsServer(const HN::IpAddress* server) {
    return server && !server->IsAnyAddress();
}

void RefreshIfStale(HN::DnsConfig& dns) {
    if (dns.IsStale()) dns.Refresh();
}

// The suffix text cut at white space and commas; runs of separators count
// once.
std::vector<std::string> SplitSuffixes(const std::string& text) {
    std::vector<std::string> pieces;
    std::string piece;
    for (char c : text) {
        if (std::isspace(static_cast<unsigned char>(c)) || c == ',') {
            if (!piece.empty()) pieces.push_back(std::move(piece));
            piece.clear();
        } else {
            piece += c;
        }
    }
    if (!piece.empty()) pieces.push_back(std::move(piece));
    return pieces;
}

}  // namespace

void ApplyDnsSettings(ApplyRun& run, HN::DnsConfig& dns) {
    PendingNetworkConfig& p = run.pending;
    constexpr const char kFailed[] = "Setting DNS failed: ";

    if (!p.mode.GetDhcpDns()) {
        Platform::Log(LOG_INFO, "Setting hostname to %s", p.hostname.c_str());
        run.Guard(kFailed, [&] {
            // A name with a dot is a fully qualified one: it sets the domain too.
            if (p.hostname.find('.') == std::string::npos)
                dns.SetHostname(p.hostname, false);
            else
                dns.SetFqdn(p.hostname, false, "");
        });

        const std::string primary = ServerText(p.primaryDns.get());
        const std::string alternate = ServerText(p.alternateDns.get());
        Platform::Log(LOG_INFO, "Setting nameservers to %s %s", primary.c_str(), alternate.c_str());
        run.Guard(kFailed, [&] {
            dns.RemoveNameServers();
            if (IsServer(p.primaryDns.get())) dns.AddUserNameServer(*p.primaryDns);
            if (IsServer(p.alternateDns.get())) dns.AddUserNameServer(*p.alternateDns);
        });
    }

    Platform::Log(LOG_INFO, "Setting suffixes to %s", p.suffixText.c_str());
    run.Guard(kFailed, [&] {
        // The host's own domain first (a new host name may have changed it).
        RefreshIfStale(dns);
        dns.SetSearchDomainsString(dns.GetDomain());
        for (const auto& suffix : SplitSuffixes(p.suffixText)) dns.AddUserSearchDomain(suffix);
    });

    run.Guard(kFailed, [&] { dns.SaveConfig(); });
}

}  // namespace Tesk
