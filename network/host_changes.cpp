// Settling the management network window's changes with what the host holds
// now, before they are written.
#include "network/host_changes.h"

#include <vector>

#include "network/network_window.h"
#include "platform/syslog.h"
#include "ui/confirm_dialog.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"

namespace Tesk {
namespace {

std::size_t Index(NetworkField field) {
    return static_cast<std::size_t>(field);
}

// "Host name: here X, on the host now Y" for each field changed on both sides.
bool AskToOverwrite(Window* opener, const std::vector<NetworkField>& conflicts,
                    const NetworkValues& mine, const NetworkValues& host) {
    std::string body =
        "The management network was changed on the host since this window opened, "
        "by another console or from elsewhere. These settings were changed here and there:\n";
    for (NetworkField field : conflicts) {
        body += "\n{color:white}" + std::string(FieldLabel(field)) + "{/color}\n";
        body += "  On the host now:  " + EscapeHostText(host[Index(field)]) + "\n";
        body += "  In this window:   " + EscapeHostText(mine[Index(field)]) + "\n";
    }
    body += "\nThe other settings are kept as the host has them.";
    ConfirmDialog ask(opener, {76, 20, 15}, "Management Network Changed on the Host", body,
                      Footer::kYesNoCancel, ConfirmDialog::YesNo());
    ask.setQuestion("Write this window's values over the host's?");
    return Run(ask) == ConfirmDialog::kYes;
}

}  // namespace

bool SettleWithHost(Window* opener, const HostContext& host, PendingNetworkConfig& pending,
                    NetworkValues& read) {
    std::optional<PendingNetworkConfig> now = LoadPendingNetworkConfig(opener, host);
    if (!now) {
        Platform::Log(LOG_WARNING, "%s",
                      "Cannot read the management network again; applying this window's values");
        return true;
    }
    const NetworkValues mine = ValuesOf(pending);
    const NetworkValues hostNow = ValuesOf(*now);
    std::vector<NetworkField> unchanged, conflicts;
    for (std::size_t i = 0; i < kNetworkFieldCount; ++i) {
        const auto field = static_cast<NetworkField>(i);
        if (mine[i] == read[i])
            unchanged.push_back(field);
        else if (hostNow[i] != read[i] && hostNow[i] != mine[i])
            conflicts.push_back(field);
    }
    for (NetworkField field : unchanged) TakeField(pending, *now, field);
    // Whether IPv6 is on in the host decides the restart question of the apply.
    pending.ipv6Host = now->ipv6Host;
    read = hostNow;
    if (conflicts.empty()) return true;

    for (NetworkField field : conflicts)
        Platform::Log(LOG_WARNING, "%s was changed on the host since the window opened: %s",
                      FieldLabel(field), hostNow[Index(field)].c_str());
    if (AskToOverwrite(opener, conflicts, mine, hostNow)) return true;
    for (NetworkField field : conflicts) TakeField(pending, *now, field);
    pending.changed = ValuesOf(pending) != read;
    return false;
}

}  // namespace Tesk
