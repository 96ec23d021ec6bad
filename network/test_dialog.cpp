// The management network test: set-up and run.
#include "network/test_dialog.h"

#include <syslog.h>

#include <optional>

#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "network/test_workers.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/items.h"
#include "ui/key_loop.h"
#include "ui/keys.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

constexpr char kNetStack[] = "defaultNetStack";
constexpr DialogSize kSetUpSize{70, 16, 7};
constexpr DialogSize kRunSize{70, 17, 7};
constexpr int kPollMs = 10;

std::string ManagementInterfaceName(const HostCtl::Backend& backend) {
    auto name = TryHost("Cannot find the management interface: %s", [&backend] {
        auto nic = backend.GetNetworkInfo()->GetManagementInterface();
        return nic ? nic->GetName() : std::string();
    });
    return name.value_or("");
}

// "Ping Address #2".
std::string FieldName(int number) {
    return std::string(Str(StrId::PingAddress)) + " #" + std::to_string(number);
}

}  // namespace

std::string TestTargetText(const HN::IpAddress& address, const std::string& interfaceName) {
    if (address.IsIpv6() && static_cast<const HN::Ipv6Address&>(address).IsLinkLocal())
        return address.GetStringAddress() + "%" + interfaceName;
    return address.GetStringAddress();
}

TestDialog::TestDialog(Window* opener, const HostContext& host)
    : FormDialog(opener, kSetUpSize), host_(host) {
    setTitle(str(StrId::TestManagementNetworkTitle));
    setBody(str(StrId::TestManagementNetworkText));
    setFooter(Footer::kSelectOkCancel);

    const HostCtl::Backend& backend = host.backend;
    std::string prefill[3];
    if (auto gateway = TryHost(
            "Reading the default gateway failed: %s",
            [&backend] { return backend.GetRoutingInfo(kNetStack)->GetZerkelDefaultGateway(); });
        gateway && !gateway->IsAnyAddress())
        prefill[0] = gateway->GetStringAddress();
    auto dns = TryHost("Reading the DNS settings failed: %s",
                       [&backend] { return backend.GetDnsConfig(kNetStack); });
    if (dns && *dns) {
        if (auto servers = TryHost("Reading the name servers failed: %s",
                                   [&] { return (**dns).GetNameServers(); })) {
            for (size_t i = 0; i < servers->size() && i < 2; ++i)
                prefill[i + 1] = (*servers)[i].GetStringAddress();
        }
    }
    std::string hostname;
    if (dns && *dns)
        hostname = TryHost("Reading the host name failed: %s", [&] {
                       return (**dns).GetHostname();
                   }).value_or("");

    for (int i = 0; i < 3; ++i)
        addresses_[i] = &items().emplace<InputItem>(FieldName(i + 1) + ":", prefill[i], -1);
    hostname_ = &items().emplace<InputItem>(str(StrId::ResolveHostname), hostname, -1);
}

KeyResult TestDialog::accept() {
    RunTestDialog::Targets targets;
    for (int i = 0; i < 3; ++i) {
        const std::string& text = addresses_[i]->value();
        if (text.empty()) continue;
        try {
            targets[i] = HN::IpAddress::Parse(text);
        } catch (const HostCtl::Lib::HostCtlException&) {
            MessageDialog message(this, str(StrId::TestManagementNetworkTitle),
                                  FieldName(i + 1) + ": \"" + EscapeHostText(text) +
                                      "\" is not a valid IPv4 or IPv6 address.");
            Run(message);
            return KeyResult::Redraw();
        }
    }
    RunTestDialog run(this, host_, std::move(targets), hostname_->value(),
                      ManagementInterfaceName(host_.backend));
    Run(run);
    return KeyResult::Leave(1);
}

RunTestDialog::RunTestDialog(Window* opener, const HostContext& host, Targets targets,
                             std::string hostname, std::string interfaceName)
    : ProgressDialog(opener, kRunSize, Str(StrId::TestingManagementNetwork),
                     Str(StrId::InterruptTestAnyTime), [this](ProgressDialog&) { return work(); }),
      host_(host),
      targets_(std::move(targets)),
      hostname_(std::move(hostname)),
      interfaceName_(std::move(interfaceName)) {
    setFooter(Footer::kCancel);
}

int RunTestDialog::work() {
    // Waits for the step's outcome, reading keys every 10 ms; <Esc> gives up.
    auto await = [this](const TestResultCell& cell) -> std::optional<bool> {
        const int done = RunKeyLoop(
            *this, {.allowIdleTimeout = true,
                    .handler =
                        [](int key) {
                            return key == KeyEscape ? KeyResult::Leave(0) : KeyResult::Ignored();
                        },
                    .pollMs = kPollMs,
                    .onPoll =
                        [&cell] {
                            return cell->load() == kTestPending ? KeyResult::Handled()
                                                                : KeyResult::Leave(1);
                        }});
        if (done == 0) return std::nullopt;
        return cell->load() == 0;
    };
    auto outcome = [this](bool ok) {
        add(std::string("{align:right}") + str(ok ? StrId::Ok : StrId::Failed) + "{/align}\n");
    };

    for (int i = 0; i < 3; ++i) {
        if (!targets_[i]) continue;
        const std::string target = TestTargetText(*targets_[i], interfaceName_);
        add(std::string(str(StrId::PingingAddress)) + " #" + std::to_string(i + 1) + " (" +
            EscapeHostText(target) + ").");
        auto ok = await(StartPing(host_, target));
        if (!ok) return 0;
        outcome(*ok);
    }
    if (!hostname_.empty()) {
        add(std::string(str(StrId::ResolvingHostname)) + " " + EscapeHostText(hostname_));
        auto ok = await(StartResolve(host_, hostname_));
        if (!ok) return 0;
        outcome(*ok);
    }
    add(str(StrId::Done));
    waitForEnter(Footer::kOk);
    return 1;
}

}  // namespace Tesk
