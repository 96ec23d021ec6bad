// The troubleshooting options window.
#include "admin/troubleshooting_window.h"

#include "admin/restart_agents_dialog.h"
#include "admin/timeout_dialogs.h"
#include "admin/troubleshooting_switches.h"
#include "ui/footers.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

constexpr const char kLeftFooter[] =
    "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";

std::string Heading(std::uint32_t id) {
    return std::string("{color:white}") + Str(id) + "{/color}\n\n";
}

std::string LightGrey(std::uint32_t id) {
    return std::string("{color:light-grey}") + Str(id) + "{/color}";
}

}  // namespace

TroubleShootingWindow::TroubleShootingWindow(Window* opener, std::string user,
                                             IdleTimeoutAccess idle)
    : PaneWindow(opener, kLeftFooter),
      user_(std::move(user)),
      idle_(std::move(idle)),
      shellEnabled_(ServiceRunning("/etc/init.d/KovaShell")),
      sshEnabled_(ServiceRunning("/etc/init.d/SSH")) {
    setTitle(Str(StrId::TroubleshootingModeOptions));
    addRow({});
    addRow({});
    addRow({});
    addRow(Str(StrId::ModifyTeskIdleTimeout));
    addRow(Str(StrId::RestartManagementAgents));
    showSwitches();
    selectRow(kShell);
}

void TroubleShootingWindow::showSwitches() {
    setRowText(kShell, Str(shellEnabled_ ? StrId::DisableKovixShell : StrId::EnableKovixShell));
    setRowText(kSsh, Str(sshEnabled_ ? StrId::DisableSsh : StrId::EnableSsh));
    // The timeouts can be changed only while both services are off.
    const bool timeoutsFree = !shellEnabled_ && !sshEnabled_;
    const std::string timeouts = Str(StrId::ModifyShellAndSshTimeouts);
    setRowText(kShellTimeouts, timeoutsFree ? timeouts : "{color:dark-grey}" + timeouts);
    setRowEnabled(kShellTimeouts, timeoutsFree);
}

PaneText TroubleShootingWindow::describe(int row) {
    switch (row) {
        case kShell:
            // The two status formats differ in where white ends; both are kept.
            return {
                Heading(StrId::KovixShell) + "{/color}{color:white}" +
                    Str(shellEnabled_ ? StrId::KovixShellIsEnabled : StrId::KovixShellIsDisabled) +
                    "{/color}\n\n" + LightGrey(StrId::ChangeKovixShellState),
                Footer::kChangeExit};
        case kSsh:
            return {Heading(StrId::SshSupport) + "{/color}{color:white}" +
                        Str(sshEnabled_ ? StrId::SshIsEnabled : StrId::SshIsDisabled) +
                        "\n\n{/color}" + LightGrey(StrId::ChangeSshState),
                    Footer::kChangeExit};
        case kShellTimeouts:
            return {Heading(StrId::ModifyShellAndSshTimeouts) +
                        LightGrey(StrId::ModifyShellAndSshTimeoutsHelp),
                    Footer::kChangeExit};
        case kTeskTimeout:
            return {
                Heading(StrId::ModifyTeskIdleTimeout) + LightGrey(StrId::ModifyTeskIdleTimeoutHelp),
                Footer::kChangeExit};
        default:
            return {Heading(StrId::RestartManagementAgents) +
                        LightGrey(StrId::RestartManagementAgentsHelp),
                    Footer::kRestartExit};
    }
}

void TroubleShootingWindow::enter(int row) {
    switch (row) {
        case kShell:
            SwitchShell(user_, &shellEnabled_);
            showSwitches();
            break;
        case kSsh:
            SwitchSsh(user_, &sshEnabled_);
            showSwitches();
            break;
        case kShellTimeouts: {
            ShellTimeoutDialog dialog(this);
            Run(dialog);
            break;
        }
        case kTeskTimeout: {
            TeskTimeoutDialog dialog(this, idle_.current ? idle_.current() : 0, idle_.rearm);
            Run(dialog);
            break;
        }
        default: {
            RestartAgentsDialog dialog(this);
            Run(dialog);
            break;
        }
    }
}

}  // namespace Tesk
