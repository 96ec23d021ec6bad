#include "app/startup.h"

#include <curses.h>
#include <fcntl.h>
#include <linux/kd.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/backend_choice.h"
#include "host/recorded_change.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/hostroot.h"
#include "platform/pid_text.h"
#include "platform/product.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "platform/vt.h"
#include "ui/keyreader.h"
#include "ui/terminal.h"
#include "ui/terminal_restore.h"
#include "ui/wait_notice.h"
#include "ui/window.h"

namespace Tesk {

namespace {

constexpr const char kPidFile[] = "/var/run/tesk.pid";

// Every way out (a normal end, an ExitRequest, exit() anywhere) ends curses
// and puts back the terminal settings found at start-up (the suspend
// character and flow control included), so the terminal is never left
// without echo and line editing, whatever curses believed them to be.
void EndCurses() {
    if (!isendwin()) endwin();
    RestoreFoundTerminal();
}

// Curses installs a stop handler of its own for SIGTSTP (it redraws from
// inside the handler) unless the signal is ignored when curses starts. The
// console's signal thread takes the job-control signals instead.
void InitCursesWithoutStopHandler() {
    struct sigaction ignore {};
    struct sigaction previous {};
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    ::sigaction(SIGTSTP, &ignore, &previous);
    initscr();
    ::sigaction(SIGTSTP, &previous, nullptr);
}

}  // namespace

std::optional<int> ParseVirtualTerminal(const char* argument) {
    long value = std::strtol(argument, nullptr, 10);
    if (static_cast<unsigned long>(value - 1) > 62) {
        Platform::Log(LOG_ERR, "Invalid VT specified for TESK: %s", argument);
        return std::nullopt;
    }
    return static_cast<int>(value);
}

bool ChooseTerminalType(bool onConsole) {
    bool local = false;
    if (onConsole) {
        local = true;
        ::setenv("TERM", "linux", 1);
    } else if (const char* term = std::getenv("TERM")) {
        if (std::strcmp(term, "linux") == 0) {
            ::setenv("TERM", "vt102", 1);
        } else if (std::strcmp(term, "xterm") == 0 && std::getenv("SSH_CLIENT") == nullptr) {
            local = true;
        }
    }
    ::setenv("TERMINFO", "/usr/share/terminfo", 0);
    ::setenv("TERM", "vt102", 0);
    return local;
}

namespace {

// Whether pid is a running instance of this console program: the same
// executable as this process.
bool IsConsoleProcess(pid_t pid) {
    if (pid == ::getpid() || ::kill(pid, 0) != 0) return false;
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return true;  // cannot tell: a live process is taken for one
    const auto other =
        std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error);
    return !error && other == self;
}

}  // namespace

bool GuardPidFile() {
    const std::string path = Platform::HostPath(kPidFile);
    std::optional<pid_t> pid;
    if (auto text = Platform::ReadRegularFile(path)) pid = Platform::ParsePidText(*text);
    if (pid && IsConsoleProcess(*pid)) {
        Platform::Log(LOG_ERR, "Attempt to run multiple TESK instances, not updating %s", kPidFile);
        return false;
    }
    // Something else than a file in its place (a FIFO would hold the open, a
    // link would lead out of the root).
    struct stat st {};
    if (::lstat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
        Platform::Log(LOG_ERR, "%s is not a regular file, not updating it", kPidFile);
        return false;
    }
    // The pid is written over the old one and only a longer rest is cut off:
    // truncating the file to nothing first made a start wait for the file
    // system's journal (up to 15 ms on a busy disk).
    const int fd =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    const std::string own = std::to_string(::getpid());
    const auto length = static_cast<off_t>(own.size());
    bool written = ::pwrite(fd, own.data(), own.size(), 0) == length;
    if (written && ::fstat(fd, &st) == 0 && st.st_size > length)
        written = ::ftruncate(fd, length) == 0;
    ::close(fd);
    return written;
}

void ReleasePidFile() {
    const std::string path = Platform::HostPath(kPidFile);
    const auto text = Platform::ReadRegularFile(path);
    if (text && Platform::ParsePidText(*text) == ::getpid()) ::unlink(path.c_str());
}

int RunConsole(int argc, char** argv,
               const std::function<std::unique_ptr<Window>(const StartFacts&)>& makeTopWindow) {
    // Before anything logs: the backend decides where the lines go. A run
    // without a backend ends here, its reason still on stderr.
    if (!InstallHostBackend()) return 1;

    Preference_Init();

    std::optional<int> vt;
    if (argc > 1) vt = ParseVirtualTerminal(argv[1]);

    StartSignalHandling();
    EndStuckQuits();
    // Before any byte reaches the terminal: a Ctrl-S typed before the console
    // started would otherwise stop the first write, and the console with it.
    termios& savedTermios = StartupTerminalSettings();
    if (SaveFoundTerminal()) ::tcgetattr(1, &savedTermios);
    TurnOffFlowControl();
    RestoreTerminalOnFatalSignals();
    InstallWaitNotice();

    int devnull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (devnull >= 0) {
        ::dup2(devnull, 2);
        ::close(devnull);
    }

    char kbType = 0;
    StartFacts facts;
    facts.localConsole = ChooseTerminalType(::ioctl(1, KDGKBTYPE, &kbType) == 0);

    Log_SetProductInfo(ProductState_GetName(), ProductState_GetVersion(),
                       ProductState_GetBuildNumber(), ProductState_GetCompilationOption());
    Log_InitWithSyslogSimpleInt(Log_CfgInterfaceGet(), "TESK");
    Platform::OpenSyslog("TESK");
    Platform::Log(LOG_INFO, "Starting TESK");

    const bool ownsPidFile = GuardPidFile();
    // A change an earlier run left unfinished, or one whose revert deadline
    // passed while no console ran, is put back before anything is shown.
    RecoverUnfinishedChange(HostCtl::TheBackend(), ChangeClockNow());

    if (vt) {
        Platform::ActivateVirtualTerminal(*vt);
        savedTermios.c_cc[VSUSP] = 0;
        ::tcsetattr(1, TCSANOW, &savedTermios);
        TurnOffFlowControl();
    }

    std::setlocale(LC_ALL, "en_US.UTF-8");

    InitCursesWithoutStopHandler();
    start_color();
    std::atexit(&EndCurses);
    SetupCurses();

    try {
        std::unique_ptr<Window> top = makeTopWindow(facts);
        try {
            Run(*top);
        } catch (const HostCtl::Lib::HostCtlException& e) {
            Platform::Log(LOG_ERR, "TESK aborted by exception: %s", e.what());
        } catch (const std::exception& e) {
            // Anything else that escapes the screens ends the console the same
            // way instead of aborting with the terminal left in curses mode.
            Platform::Log(LOG_ERR, "TESK aborted by exception: %s", e.what());
        }
    } catch (const ExitRequest& request) {
        // A quit signal, a resize, a restart or a removed card: every window
        // has been unwound and destroyed on the way here. The screen is left
        // as it was and the palette is not reset: init starts the console
        // again at once.
        EndCurses();
        if (ownsPidFile) ReleasePidFile();
        return request.status;
    }

    erase();
    refresh();
    EndCurses();
    static const char kResetPalette[] = {'\033', ']', 'R'};
    ssize_t ignored = ::write(1, kResetPalette, sizeof kResetPalette);
    (void)ignored;
    if (ownsPidFile) ReleasePidFile();
    return 0;
}

}  // namespace Tesk
