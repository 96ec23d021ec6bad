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

bool Running(const HostContext& host, HostCtl::Services::Service service) {
    return host.backend.GetShellServices()->IsRunning(service);
}

// A dialog made over the window, run, and gone when it returns.
template <typename Dialog, typename... Args>
void Open(Window* over, Args&&... args) {
    Dialog dialog(over, std::forward<Args>(args)...);
    Run(dialog);
}

}  // namespace

TroubleShootingWindow::TroubleShootingWindow(Window* opener, const HostContext& host,
                                             IdleTimeoutAccess idle)
    : PaneWindow(opener, kLeftFooter),
      host_(host),
      idle_(std::move(idle)),
      shellEnabled_(Running(host, HostCtl::Services::Service::Shell)),
      sshEnabled_(Running(host, HostCtl::Services::Service::Ssh)) {
    setTitle(Str(StrId::TroubleshootingModeOptions));
    // The two status formats differ in where white ends; both are kept.
    shellRow_ = addRow(
        {}, {[this] {
                 return PaneText{Heading(StrId::KovixShell) + "{/color}{color:white}" +
                                     Str(shellEnabled_ ? StrId::KovixShellIsEnabled
                                                       : StrId::KovixShellIsDisabled) +
                                     "{/color}\n\n" + LightGrey(StrId::ChangeKovixShellState),
                                 Footer::kChangeExit};
             },
             [this] {
                 SwitchService(host_, HostCtl::Services::Service::Shell, &shellEnabled_);
                 showSwitches();
             }});
    sshRow_ = addRow(
        {}, {[this] {
                 return PaneText{Heading(StrId::SshSupport) + "{/color}{color:white}" +
                                     Str(sshEnabled_ ? StrId::SshIsEnabled : StrId::SshIsDisabled) +
                                     "\n\n{/color}" + LightGrey(StrId::ChangeSshState),
                                 Footer::kChangeExit};
             },
             [this] {
                 SwitchService(host_, HostCtl::Services::Service::Ssh, &sshEnabled_);
                 showSwitches();
             }});
    timeoutsRow_ =
        addRow({}, {[] {
                        return PaneText{Heading(StrId::ModifyShellAndSshTimeouts) +
                                            LightGrey(StrId::ModifyShellAndSshTimeoutsHelp),
                                        Footer::kChangeExit};
                    },
                    [this] { Open<ShellTimeoutDialog>(this, host_.backend); }});
    addRow(Str(StrId::ModifyTeskIdleTimeout),
           {[] {
                return PaneText{Heading(StrId::ModifyTeskIdleTimeout) +
                                    LightGrey(StrId::ModifyTeskIdleTimeoutHelp),
                                Footer::kChangeExit};
            },
            [this] {
                Open<TeskTimeoutDialog>(this, host_.backend, idle_.current ? idle_.current() : 0,
                                        idle_.rearm);
            }});
    addRow(Str(StrId::RestartManagementAgents),
           {[] {
                return PaneText{Heading(StrId::RestartManagementAgents) +
                                    LightGrey(StrId::RestartManagementAgentsHelp),
                                Footer::kRestartExit};
            },
            [this] { Open<RestartAgentsDialog>(this, host_.backend); }});
    showSwitches();
    selectRow(shellRow_);
}

void TroubleShootingWindow::showSwitches() {
    setRowText(shellRow_, Str(shellEnabled_ ? StrId::DisableKovixShell : StrId::EnableKovixShell));
    setRowText(sshRow_, Str(sshEnabled_ ? StrId::DisableSsh : StrId::EnableSsh));
    // The timeouts can be changed only while both services are off.
    const bool timeoutsFree = !shellEnabled_ && !sshEnabled_;
    const std::string timeouts = Str(StrId::ModifyShellAndSshTimeouts);
    setRowText(timeoutsRow_, timeoutsFree ? timeouts : "{color:dark-grey}" + timeouts);
    setRowEnabled(timeoutsRow_, timeoutsFree);
}

}  // namespace Tesk
