#include "app/startup.h"

#include <curses.h>
#include <fcntl.h>
#include <linux/kd.h>
#include <linux/vt.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "hostctl/exception.h"
#include "platform/hostroot.h"
#include "platform/product.h"
#include "platform/syslog.h"
#include "ui/keyreader.h"
#include "ui/terminal.h"
#include "ui/window.h"

namespace Tesk {

namespace {

constexpr const char kPidFile[] = "/var/run/tesk.pid";

void EndCurses() {
    if (!isendwin()) endwin();
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

void GuardPidFile() {
    const std::string path = Platform::HostPath(kPidFile);
    long pid = -1;
    if (FILE* in = std::fopen(path.c_str(), "r")) {
        if (std::fscanf(in, "%ld", &pid) != 1) pid = -1;
        std::fclose(in);
    }
    if (pid > 0 && ::kill(static_cast<pid_t>(pid), 0) == 0) {
        Platform::Log(LOG_ERR, "Attempt to run multiple TESK instances, not updating %s", kPidFile);
        return;
    }
    if (FILE* out = std::fopen(path.c_str(), "w")) {
        std::fprintf(out, "%d", static_cast<int>(::getpid()));
        std::fflush(out);
        std::fclose(out);
    }
}

void SwitchVirtualTerminal(int vt) {
    int fd = ::open("/dev/console", O_RDWR | O_CLOEXEC);
    if (fd < 0) return;
    if (::ioctl(fd, VT_ACTIVATE, vt) != 0) ::ioctl(fd, VT_WAITACTIVE, vt);
    ::close(fd);
}

int RunConsole(int argc, char** argv,
               const std::function<std::unique_ptr<Window>(const StartFacts&)>& makeTopWindow) {
    Preference_Init();

    std::optional<int> vt;
    if (argc > 1) vt = ParseVirtualTerminal(argv[1]);

    StartSignalHandling();

    int devnull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (devnull >= 0) {
        ::dup2(devnull, 2);
        ::close(devnull);
    }

    termios& savedTermios = StartupTerminalSettings();
    ::tcgetattr(1, &savedTermios);

    char kbType = 0;
    StartFacts facts;
    facts.localConsole = ChooseTerminalType(::ioctl(1, KDGKBTYPE, &kbType) == 0);

    Log_SetProductInfo(ProductState_GetName(), ProductState_GetVersion(),
                       ProductState_GetBuildNumber(), ProductState_GetCompilationOption());
    Log_InitWithSyslogSimpleInt(Log_CfgInterfaceGet(), "TESK");
    Platform::OpenSyslog("TESK");
    Platform::Log(LOG_INFO, "Starting TESK");

    GuardPidFile();

    if (vt) {
        SwitchVirtualTerminal(*vt);
        savedTermios.c_cc[VSUSP] = 0;
        ::tcsetattr(1, TCSANOW, &savedTermios);
    }

    std::setlocale(LC_ALL, "en_US.UTF-8");

    initscr();
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
        return request.status;
    }

    erase();
    refresh();
    endwin();
    static const char kResetPalette[] = {'\033', ']', 'R'};
    ssize_t ignored = ::write(1, kResetPalette, sizeof kResetPalette);
    (void)ignored;
    return 0;
}

}  // namespace Tesk
