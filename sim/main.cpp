// tesk-sim: makes and drives simulated host roots, and acts as each simulated
// host tool when started through one of the root's tool links.
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "hostctl/backend.h"
#include "sim/host.h"
#include "sim/pam_wrapper_start.h"
#include "sim/tools.h"
#include "simhost/backend.h"

namespace fs = std::filesystem;

namespace {

int Usage(std::ostream& out, int status) {
    out << "usage:\n"
           "  tesk-sim init DIR [--profile NAME]   make a simulated host root\n"
           "  tesk-sim run [DIR] [--profile NAME] [--vt N]\n"
           "                                       start the console on a host root in this\n"
           "                                       terminal (a fresh temporary root without DIR)\n"
           "  tesk-sim gallery [DIR]               try every widget with real keys (tesk-gallery)\n"
           "  tesk-sim card insert DIR USERID      insert a smart card and tell the console\n"
           "  tesk-sim card remove DIR             remove the smart card and tell the console\n";
    return status;
}

struct Options {
    std::vector<std::string> positional;
    std::string profile = "default";
    std::string vt;
};

bool ParseOptions(int argc, char** argv, int first, Options& o) {
    for (int i = first; i < argc; ++i) {
        std::string a = argv[i];
        if ((a == "--profile" || a == "--vt") && i + 1 < argc) {
            (a == "--profile" ? o.profile : o.vt) = argv[++i];
        } else if (a.starts_with("--")) {
            std::cerr << "tesk-sim: unknown option " << a << "\n";
            return false;
        } else {
            o.positional.push_back(a);
        }
    }
    return true;
}

int Init(const Options& o) {
    if (o.positional.size() != 1) return Usage(std::cerr, 2);
    Sim::InitRoot(o.positional[0], o.profile);
    std::cout << "simulated host root made in " << fs::absolute(o.positional[0]).string()
              << " (profile " << o.profile << ")\n";
    return 0;
}

// Starts program on the root in this terminal, waits for it and says how it
// ended; its exit status (128 + signal when a signal ended it).
int RunConsoleOnce(const std::string& root, const std::string& console, const std::string& program,
                   const Options& o) {
    // The console preloads pam_wrapper: it starts alone (pam_wrapper_start.h).
    Sim::PamWrapperStart pamStart;
    pid_t child = ::fork();
    if (child < 0) {
        std::perror("tesk-sim: fork");
        return 1;
    }
    if (child == 0) {
        ::signal(SIGINT, SIG_DFL);
        ::signal(SIGQUIT, SIG_DFL);
        ::setenv("TESK_ROOT", root.c_str(), 1);
        for (const auto& [name, value] : Sim::PamEnvironment(root))
            ::setenv(name.c_str(), value.c_str(), 1);
        std::vector<char*> args{const_cast<char*>(program.c_str())};
        if (!o.vt.empty()) args.push_back(const_cast<char*>(o.vt.c_str()));
        args.push_back(nullptr);
        ::execv(console.c_str(), args.data());
        std::perror(("tesk-sim: cannot start " + console).c_str());
        ::_exit(127);
    }
    int status = 0;
    bool reaped = false;
    pamStart.started(
        child, [&] { return reaped = ::waitpid(child, &status, WNOHANG) == child; },
        std::chrono::seconds(10));
    while (!reaped && ::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) {
        std::cout << "\nConsole ended with status " << WEXITSTATUS(status) << ".\n";
        return WEXITSTATUS(status);
    }
    std::cout << "\nConsole ended by signal " << WTERMSIG(status) << ".\n";
    return 128 + WTERMSIG(status);
}

// The terminal's settings while tesk-sim runs: software flow control off
// before the first byte is written (a Ctrl-S typed before tesk-sim started
// would stop the banner, and tesk-sim with it, until Ctrl-Q), the settings as
// found put back at the end.
class TerminalWithoutFlowControl {
public:
    TerminalWithoutFlowControl() {
        saved_ = ::tcgetattr(1, &found_) == 0;
        if (!saved_) return;
        termios settings = found_;
        settings.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF);
        ::tcsetattr(1, TCSANOW, &settings);
    }
    ~TerminalWithoutFlowControl() {
        if (saved_) ::tcsetattr(1, TCSANOW, &found_);
    }
    TerminalWithoutFlowControl(const TerminalWithoutFlowControl&) = delete;
    TerminalWithoutFlowControl& operator=(const TerminalWithoutFlowControl&) = delete;

private:
    termios found_{};
    bool saved_ = false;
};

// Starts program (beside tesk-sim) on a host root in this terminal and waits.
int Run(const Options& o, const std::string& program) {
    if (o.positional.size() > 1) return Usage(std::cerr, 2);
    const TerminalWithoutFlowControl terminal;
    bool temporary = o.positional.empty();
    std::string root;
    if (temporary) {
        std::string pattern = (fs::temp_directory_path() / "tesk-root.XXXXXX").string();
        if (!::mkdtemp(pattern.data())) {
            std::perror("tesk-sim: mkdtemp");
            return 1;
        }
        root = pattern;
        Sim::InitRoot(root, o.profile);
    } else {
        root = fs::absolute(o.positional[0]).string();
        if (!fs::exists(fs::path(root) / "var/lib/simhost/state.json"))
            Sim::InitRoot(root, o.profile);
    }
    auto [user, password] = Sim::DemoLogin();
    std::cout << "Simulated host root: " << root << "\n"
              << "Demo login: user \"" << user << "\", password \"" << password << "\"\n"
              << std::flush;

    // Beside tesk-sim in a build tree; the console is in sbin when installed.
    fs::path own = Sim::OwnDirectory();
    std::string console = (own / program).string();
    for (const fs::path& candidate : {own / program, own.parent_path() / "sbin" / program})
        if (fs::exists(candidate)) {
            console = candidate.string();
            break;
        }
    // The console ends on SIGINT and SIGQUIT itself; this process waits for it.
    ::signal(SIGINT, SIG_IGN);
    ::signal(SIGQUIT, SIG_IGN);
    int result = 0;
    for (;;) {
        // A host that was off or restarting boots first, as its init would.
        if (Sim::BootHost(root)) std::cout << "The simulated host has booted.\n" << std::flush;
        result = RunConsoleOnce(root, console, program, o);
        const Sim::PowerState power = Sim::ReadPowerState(root);
        if (power == Sim::PowerState::Off) {
            std::cout << "The simulated host is powered off.\n";
            break;
        }
        if (power != Sim::PowerState::Restarting) break;
        std::cout << "The simulated host restarts.\n" << std::flush;
    }
    if (temporary) {
        std::error_code ec;
        fs::remove_all(root, ec);
    }
    return result;
}

int Card(const Options& o) {
    const auto& p = o.positional;
    bool insert = p.size() == 3 && p[0] == "insert";
    bool remove = p.size() == 2 && p[0] == "remove";
    if (!insert && !remove) return Usage(std::cerr, 2);
    std::string message;
    bool told = Sim::ChangeCard(p[1], insert ? p[2] : std::string(), message);
    std::cout << message << "\n";
    return told ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    // Always the simulated backend, not a choice as in the console: this is
    // the simulated host's own program, and its tools work through the same
    // host-control objects as the console. It installs no platform hooks:
    // nothing here logs, reads system-information nodes or switches terminals.
    HostCtl::SetBackend(ZrkCtl::MakeSimulatedBackend());
    std::string name = fs::path(argv[0]).filename().string();
    if (name != "tesk-sim") {
        int status = Sim::RunTool(argc, argv);
        if (status >= 0) return status;
        std::cerr << name << ": not a simulated host tool\n";
        return 127;
    }
    if (argc < 2) return Usage(std::cerr, 2);
    std::string command = argv[1];
    if (command == "-h" || command == "--help" || command == "help") return Usage(std::cout, 0);
    Options o;
    if (!ParseOptions(argc, argv, 2, o)) return 2;
    try {
        if (command == "init") return Init(o);
        if (command == "run") return Run(o, "tesk");
        if (command == "gallery") return Run(o, "tesk-gallery");
        if (command == "card") return Card(o);
    } catch (const std::exception& e) {
        std::cerr << "tesk-sim: " << e.what() << "\n";
        return 1;
    }
    std::cerr << "tesk-sim: unknown command " << command << "\n";
    return Usage(std::cerr, 2);
}
