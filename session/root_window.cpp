#include "session/root_window.h"

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>

#include "app/event_loop.h"
#include "app/flags.h"
#include "app/keys.h"
#include "app/startup.h"
#include "host/queries.h"
#include "host/runner.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/network.h"
#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "ui/footers.h"

extern char** environ;

namespace Tesk {

namespace {

constexpr std::uint32_t kSeparator = 3;
constexpr std::uint32_t kPassword = 5, kLockdown = 6, kManagementNetwork = 7, kRestartNetwork = 8,
                        kTestNetwork = 9, kNetworkRestore = 10, kSupport = 11, kLogs = 12,
                        kTroubleshooting = 13, kReset = 14, kKeyboard = 15;

constexpr const char kSupportFile[] = "/etc/brelt/support";
constexpr const char kPager[] = "/bin/less";
constexpr const char kPagerPrompt[] = "<Q> Quit </> RegExp Search <H> Help";

// The footers of the right pane, as the menu has always shown them.
constexpr const char kRestartFooter[] =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char kLockdownFooter[] =
    "{color:white}<Enter>{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char kLeftFooter[] =
    "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";

// The management interface, found once and kept for the process; a copy the
// host has changed since is read again before use.
std::unique_ptr<HostCtl::Network::ZrkNic>& ManagementInterface() {
    static std::unique_ptr<HostCtl::Network::ZrkNic> nic;
    if (!nic) nic = GetManagementInterface();
    try {
        if (nic && nic->IsStale()) nic->Refresh();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting management interface failed: %s", e.what());
    }
    return nic;
}

}  // namespace

std::vector<RootWindow::Log> RootWindow::LogTable() {
    return {{"Syslog", "/var/log/syslog.log"},
            {"Zerkel", "/var/log/zerkel.log"},
            {"Config", "/var/log/sysboot.log"},
            {"Management Agent (hagentd)", "/var/log/hagentd.log"},
            {"Centrix Agent (mgra)", "/var/log/mgra.log"},
            {"High Availibility Agent (hamon)", "/var/log/hamon.log"},
            {"Brelt Kovix Observation log (noxd)", "/var/log/noxd.log"}};
}

RootWindow::RootWindow(Window* opener)
    : Frame(opener, 0, 0, COLS, LINES, ColourBlack, ColourWhite), logs_(LogTable()) {
    const int leftWidth = COLS / 2;
    const int rightWidth = COLS - leftWidth;
    left_ = std::make_unique<Window>(this, 0, 0, leftWidth, LINES, ColourYellow, ColourBlack);
    right_ = std::make_unique<Window>(this, leftWidth, 0, rightWidth, LINES, ColourDarkGrey,
                                      ColourWhite);
    title_ = std::make_unique<TextArea>(left_.get(), 2, 1, leftWidth - 4, 1, ColourBlack);
    menu_ = std::make_unique<ItemList>(left_.get(), 1, 3, leftWidth - 2, LINES - 6);
    leftFooter_ =
        std::make_unique<TextArea>(left_.get(), 2, LINES - 2, leftWidth - 4, 1, ColourBlack);
    pane_ =
        std::make_unique<TextArea>(right_.get(), 2, 1, rightWidth - 4, LINES - 5, ColourLightGrey);
    pane_->setScrollHints(true);
    status_ =
        std::make_unique<TextArea>(right_.get(), 2, LINES - 3, rightWidth - 4, 1, ColourYellow);
    footer_ =
        std::make_unique<TextArea>(right_.get(), 2, LINES - 2, rightWidth - 4, 1, ColourWhite);

    title_->setText(str(4));
    leftFooter_->setText(kLeftFooter);
    readLockdown();
    buildMenu();
    std::ifstream support(Platform::HostPath(kSupportFile));
    for (std::string line; std::getline(support, line);) support_ += line + "\n";
    menu_->selectByOrdinal(0);
    describe();
}

RootWindow::~RootWindow() = default;

void RootWindow::readLockdown() {
    lockdown_ = RuxCmdGet("ruxsvc/auth/lockdown_is_enabled");
}

void RootWindow::buildMenu() {
    // The entry is usable when lockdown is on, or else when it could be.
    const bool lockdownEnabled = lockdown_ || RuxCmdGet("ruxsvc/auth/lockdown_is_possible");
    auto& nic = ManagementInterface();
    managementUsable_ = false;
    try {
        managementUsable_ = nic && nic->IsUsable();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting management interface failed: %s", e.what());
    }
    bool pxeBoot = false;
    try {
        pxeBoot = HostCtl::TheBackend().GetUserAdvancedOptions()->HasUserOption("PXEBootEnabled");
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting advanced option failed: %s", e.what());
    }

    auto add = [this](std::uint32_t entry, bool enabled) {
        entries_.push_back(entry);
        if (entry == kSeparator) {
            menu_->emplace<LabelItem>("", false);
            return;
        }
        LabelItem& item = menu_->emplace<LabelItem>(str(entry), true);
        if (!enabled) item.setEnabled(false);
    };
    add(kPassword, true);
    add(kLockdown, lockdownEnabled);
    add(kSeparator, false);
    add(kManagementNetwork, managementUsable_);
    add(kRestartNetwork, managementUsable_);
    add(kTestNetwork, managementUsable_);
    add(kNetworkRestore, true);
    add(kSeparator, false);
    if (Flags().localConsole) add(kKeyboard, true);
    add(kTroubleshooting, true);
    add(kSeparator, false);
    add(kLogs, true);
    add(kSeparator, false);
    add(kSupport, true);
    add(kSeparator, false);
    add(kReset, !pxeBoot);
}

std::uint32_t RootWindow::selectedEntry() const {
    int index = menu_->selectedIndex();
    if (index < 0 || static_cast<size_t>(index) >= entries_.size()) return kSeparator;
    return entries_[static_cast<size_t>(index)];
}

std::string RootWindow::logList() {
    std::string text;
    int number = 0;
    for (auto& log : logs_) {
        struct stat st {};
        log.available = ::stat(Platform::HostPath(log.path).c_str(), &st) == 0;
        if (!log.available) continue;
        text += "{color:white}<" + std::to_string(++number) + "> {color:light-grey}" + log.title +
                "{/color}\n";
    }
    return text + str(27);
}

std::string RootWindow::managementSummary() {
    std::string notSet = str(118);
    std::string host, ipv4, ipv6;
    bool dhcp = false;
    try {
        host = HostCtl::TheBackend().GetDnsConfig("defaultNetStack")->GetHostname();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting host name failed: %s", e.what());
    }
    try {
        if (auto& nic = ManagementInterface()) {
            HostCtl::Network::IpConfig config = nic->GetIpConfig();
            dhcp = nic->GetConfiguredIpConfig().GetUseDhcp();
            std::string address = config.GetIpv4Address().GetStringAddress();
            if (!config.GetIpv4UseNone() && address != "0.0.0.0") ipv4 = address;
            for (const auto& net : config.GetIpv6Networks())
                ipv6 += "  " + net.GetAddress().GetStringAddress() + "/" +
                        std::to_string(net.GetPrefixLength()) + "\n";
        }
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting management interface failed: %s", e.what());
    }
    std::string text = std::string(str(40)) + ":\n  " + (host.empty() ? notSet : host) + "\n\n";
    text += std::string(str(35)) + ":\n  " + (ipv4.empty() ? notSet : ipv4) + "\n";
    if (dhcp && !ipv4.empty()) text += std::string("  ") + str(31) + "\n";
    text += "\n" + std::string(str(36)) + ":\n" + (ipv6.empty() ? "  " + notSet + "\n" : ipv6);
    return text + "\n" + str(23);
}

void RootWindow::describe() {
    const std::uint32_t entry = selectedEntry();
    std::string heading =
        entry == kSeparator ? "" : std::string("{color:white}") + str(entry) + "{/color}\n\n";
    std::string text, footer;
    switch (entry) {
        case kPassword:
            text = std::string(str(Flags().emptyPasswordLogin ? 118 : 117)) + "\n\n" + str(21);
            footer = Footer::kChangeLogOut;
            break;
        case kLockdown:
            text = std::string(str(lockdown_ ? 119 : 120)) + "\n\n" + str(22);
            footer = kLockdownFooter;
            break;
        case kManagementNetwork:
            text = managementSummary();
            footer = Footer::kMoreLogOut;
            break;
        case kRestartNetwork:
            text = str(24);
            footer = kRestartFooter;
            break;
        case kTestNetwork:
            text = str(25);
            footer = Footer::kRunTestLogOut;
            break;
        case kNetworkRestore:
            text = str(26);
            footer = kRestartFooter;
            break;
        case kSupport:
            text = support_;
            break;
        case kLogs:
            text = logList();
            footer = Footer::kLogOut;
            break;
        case kTroubleshooting:
            text = str(28);
            footer = Footer::kMoreLogOut;
            break;
        case kReset:
            text = str(29);
            footer = Footer::kResetLogOut;
            break;
        case kKeyboard:
            text = str(32);
            footer = Footer::kMoreLogOut;
            break;
        default:
            break;
    }
    pane_->setText(heading + text);
    footer_->setText(footer);
    status_->setText(Flags().emptyPasswordLogin ? str(33) : "");
    menu_->draw();
    redraw();
}

void RootWindow::openEntry(std::uint32_t entry) {
    if (entry == kRestartNetwork && !ManagementInterface()) {
        MessageDialog message(this, 16, 19);
        Run(message);
    }
    // The other entries open their dialogs here as they become available;
    // support information and the logs are read in the pane itself.
    readLockdown();
    describe();
}

void RootWindow::openLog(const std::string& hostPath) {
    Flags().currentWindow = nullptr;
    ViewWithPager(kPager, hostPath);
    keypad(stdscr, TRUE);
    setActive(true);
    Flags().currentWindow = this;
    clearok(curscr, TRUE);
    describe();
}

int RootWindow::run() {
    describe();
    for (;;) {
        int key = ReadKey(this, true);
        const std::uint32_t entry = selectedEntry();
        if (key == KEY_UP || key == KEY_DOWN) {
            if (key == KEY_UP ? menu_->moveUp() : menu_->moveDown()) describe();
        } else if (key == KeyEscape) {
            return 0;
        } else if (key >= '0' && key <= '9' && entry == kLogs) {
            int wanted = key - '0', number = 0;
            for (const auto& log : logs_) {
                if (log.available && ++number == wanted) {
                    openLog(log.path);
                    break;
                }
            }
        } else if (key == KeyEnter) {
            openEntry(entry);
        } else if (pane_->handleScrollKey(key)) {
            redraw();
        }
    }
}

int ViewWithPager(const std::string& pagerHostPath, const std::string& logHostPath) {
    termios current{};
    const bool haveCurrent = ::tcgetattr(1, &current) == 0;
    ::tcsetattr(1, TCSANOW, &StartupTerminalSettings());
    clear();
    refresh();

    const char* old = std::getenv("LESSSECURE");
    const std::string remembered = old ? old : "";
    ::setenv("LESSSECURE", "1", 1);

    // The pager runs in its own process group in the foreground, with the
    // signals this process keeps blocked for its signal thread unblocked, so
    // that Ctrl-C and friends reach the pager and not the console.
    const std::string pager = Platform::HostPath(pagerHostPath);
    const std::string log = Platform::HostPath(logHostPath);
    char* argv[] = {const_cast<char*>("less"), const_cast<char*>("-cfP"),
                    const_cast<char*>(kPagerPrompt), const_cast<char*>(log.c_str()), nullptr};
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    sigset_t none, defaults;
    sigemptyset(&none);
    sigemptyset(&defaults);
    for (int s : {SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH, SIGTTOU, SIGTTIN, SIGTSTP})
        sigaddset(&defaults, s);
    posix_spawnattr_setsigmask(&attr, &none);
    posix_spawnattr_setsigdefault(&attr, &defaults);
    posix_spawnattr_setpgroup(&attr, 0);
    posix_spawnattr_setflags(
        &attr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    // The child makes its new group the terminal's foreground group before
    // the pager starts, so the pager never touches the terminal from the
    // background (which would stop it).
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addtcsetpgrp_np(&actions, 0);
    pid_t child = -1;
    int rc = ::posix_spawn(&child, pager.c_str(), &actions, &attr, argv, environ);
    // Without a terminal on standard input there is no foreground to hand over.
    if (rc == ENOTTY) rc = ::posix_spawn(&child, pager.c_str(), nullptr, &attr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);

    // Taking the terminal back from the background would stop this process.
    sigset_t ttou, previous;
    sigemptyset(&ttou);
    sigaddset(&ttou, SIGTTOU);
    ::pthread_sigmask(SIG_BLOCK, &ttou, &previous);
    int status = -1;
    if (rc == 0) {
        // A pager stopped by job control (Ctrl-Z) would leave the console
        // waiting for ever with nobody to resume it: it is resumed at once.
        for (;;) {
            int wstatus = 0;
            pid_t r = ::waitpid(child, &wstatus, WUNTRACED);
            if (r < 0 && errno == EINTR) continue;
            if (r == child && WIFSTOPPED(wstatus)) {
                ::kill(-child, SIGCONT);
                continue;
            }
            if (r == child) status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1;
            break;
        }
    } else {
        errno = rc;
        Platform::LogSystemError("Running the pager failed");
    }

    ::setenv("LESSSECURE", remembered.c_str(), 1);
    if (haveCurrent) ::tcsetattr(1, TCSANOW, &current);
    ::tcsetpgrp(0, ::getpgrp());
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    return status;
}

}  // namespace Tesk
