// The checks after applying the management network. What to check is read
// from the host when the dialog runs; link and address are asked again until
// they hold or their time runs out, pings and the resolution run on the
// management network test's workers.
#include "network/check_after_apply.h"

#include <chrono>
#include <functional>
#include <vector>

#include "hostctl/try_call.h"
#include "network/test_dialog.h"
#include "network/test_workers.h"
#include "ui/footers.h"
#include "ui/key_loop.h"
#include "ui/markup_escape.h"
#include "ui/progress_dialog.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;
using Clock = std::chrono::steady_clock;

constexpr DialogSize kSize{74, 21, 5};
constexpr int kPollMs = 20;
constexpr char kNetStack[] = "defaultNetStack";

// One check: its line, its time limit, and how it starts; the poller it
// returns answers none while the outcome is not known yet.
struct Check {
    std::string line;
    int limitMs;
    std::function<std::function<std::optional<bool>()>()> start;
};

// A condition asked again on every poll until it holds.
std::function<std::function<std::optional<bool>()>()> Until(std::function<bool()> holds) {
    return [holds] {
        return [holds]() -> std::optional<bool> {
            if (holds()) return true;
            return std::nullopt;
        };
    };
}

std::function<std::function<std::optional<bool>()>()> OnWorker(
    std::function<TestResultCell()> begin) {
    return [begin] {
        TestResultCell cell = begin();
        return [cell]() -> std::optional<bool> {
            const int value = cell->load();
            if (value == kTestPending) return std::nullopt;
            return value == 0;
        };
    };
}

bool LinkUp(const HostCtl::Backend& backend) {
    auto up = TryHost("Checking the management link failed: %s", [&backend] {
        auto nic = backend.GetNetworkInfo()->GetManagementInterface();
        if (!nic || !nic->IsUsable()) return false;
        const auto connection = nic->GetPortConnection();
        if (connection.GetType() != HN::ConnectionType::PortGroup) return true;
        const HN::NicTeamingPolicy policy = connection.GetPortGroup().GetTeamingPolicy();
        for (const auto& name : policy.GetActiveUplinks()) {
            auto pnic = backend.GetPnic(name);
            pnic->Refresh();
            if (pnic->IsLinkUp()) return true;
        }
        return false;
    });
    return up.value_or(false);
}

bool HasAddress(const HostCtl::Backend& backend) {
    auto has = TryHost("Checking the management address failed: %s", [&backend] {
        auto nic = backend.GetNetworkInfo()->GetManagementInterface();
        if (!nic) return false;
        nic->Refresh();
        const HN::IpConfig now = nic->GetIpConfig();
        if (!now.GetIpv4Address().IsAnyAddress()) return true;
        for (const auto& network : now.GetIpv6Networks())
            if (!network.GetAddress().IsLinkLocal() && !network.GetAddress().IsAnyAddress())
                return true;
        return false;
    });
    return has.value_or(false);
}

// What the host is configured with now decides the checks.
std::vector<Check> PlanChecks(const HostContext& host) {
    const HostCtl::Backend& backend = host.backend;
    std::vector<Check> checks;
    std::string name = "the management interface";
    bool dhcp = false;
    std::string gateway;
    TryHost("Reading the management interface failed: %s", [&] {
        auto nic = backend.GetNetworkInfo()->GetManagementInterface();
        if (!nic) return;
        name = nic->GetName();
        nic->Refresh();
        const HostCtl::Network::IpConfig configured = nic->GetConfiguredIpConfig();
        dhcp = configured.IsUsingDhcp();
        // A gateway set by hand is checked even when the host has no route
        // to it yet: a missing route is a failed check, not a skipped one.
        if (!configured.GetUseDhcp() && !configured.GetIpv4UseNone() &&
            !configured.GetIpv4Gateway().IsAnyAddress())
            gateway = configured.GetIpv4Gateway().GetStringAddress();
    });
    checks.push_back(
        {"Link up on " + name, kLinkCheckMs, Until([&backend] { return LinkUp(backend); })});
    checks.push_back({"Address on " + name, dhcp ? kDhcpAddressCheckMs : kStaticAddressCheckMs,
                      Until([&backend] { return HasAddress(backend); })});

    TryHost("Reading the default gateway failed: %s", [&] {
        auto routing = backend.GetRoutingInfo(kNetStack);
        if (gateway.empty()) {
            if (auto v4 = routing->GetZerkelDefaultGateway(); !v4.IsAnyAddress())
                gateway = v4.GetStringAddress();
            else if (auto v6 = routing->GetIpv6ZerkelDefaultGateway(); !v6.IsAnyAddress())
                gateway = TestTargetText(v6, name);
        }
        if (gateway.empty()) return;
        checks.push_back({"Default gateway " + gateway + " answers", kPingCheckMs,
                          OnWorker([&host, gateway] { return StartPing(host, gateway); })});
    });
    TryHost("Reading the DNS settings failed: %s", [&] {
        auto dns = backend.GetDnsConfig(kNetStack);
        dns->Refresh();
        std::vector<std::string> servers;
        for (const auto& s : dns->GetNameServers())
            if (!s.IsAnyAddress()) servers.push_back(s.GetStringAddress());
        for (const auto& s : dns->GetIpv6NameServers(false))
            if (!s.IsAnyAddress()) servers.push_back(TestTargetText(s, name));
        for (const auto& server : servers)
            checks.push_back({"Name server " + server + " answers", kPingCheckMs,
                              OnWorker([&host, server] { return StartPing(host, server); })});
        const std::string hostname = dns->GetHostname();
        if (!hostname.empty())
            checks.push_back(
                {"Host name " + hostname + " resolves", kResolveCheckMs,
                 OnWorker([&host, hostname] { return StartResolve(host, hostname); })});
    });
    return checks;
}

}  // namespace

std::optional<std::string> RunChecksAfterApplying(Window* opener, const HostContext& host,
                                                  const std::string& title, bool waitAtEnd) {
    std::optional<std::string> firstFailed;
    ProgressDialog dialog(
        opener, kSize, title, "Checking that the host can still be reached over the network.",
        [&](ProgressDialog& p) {
            p.setFooter("");
            for (const Check& check : PlanChecks(host)) {
                p.add(EscapeHostText(check.line) + ".");
                auto poll = check.start();
                const auto end = Clock::now() + std::chrono::milliseconds(check.limitMs);
                std::optional<bool> outcome = poll();
                if (!outcome)
                    RunKeyLoop(p, {.allowIdleTimeout = false, .pollMs = kPollMs, .onPoll = [&] {
                                       outcome = poll();
                                       if (!outcome && Clock::now() < end)
                                           return KeyResult::Handled();
                                       return KeyResult::Leave(1);
                                   }});
                const bool ok = outcome.value_or(false);
                p.add(std::string("{align:right}") + Str(ok ? StrId::Ok : StrId::Failed) +
                      "{/align}\n");
                if (!ok && !firstFailed) firstFailed = check.line;
            }
            if (!waitAtEnd) return 1;
            p.add(Str(StrId::Done));
            p.waitForEnter(Footer::kOk);
            return 1;
        });
    Run(dialog);
    return firstFailed;
}

}  // namespace Tesk
