// Everything the console does that could reach the machine it runs on, beyond
// its own terminal and the files of its host root: each such call in the
// console's sources is listed here with the way it is kept to the real host
// root. A new call fails the test until it is listed (and routed); a listed
// call that is gone fails it too, so the list stays the truth. The screen
// tests below show the routing of the calls a simulated root must not make.
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

namespace fs = std::filesystem;

const fs::path kSources = TESK_SOURCE_DIR;

// The folders built into the console program (not tesk-sim, not the gallery).
const char* const kConsoleFolders[] = {"app",  "ui",      "session",  "admin",   "network",
                                       "host", "hostctl", "platform", "simhost", "store"};

// Calls that reach past the host root: devices and kernel interfaces, other
// processes, the system log, the machine's accounts, terminal control.
const std::regex kMachineCall(
    R"(\b(ioctl|kill|reboot|syscall|mount|umount2?|sethostname|setdomainname|settimeofday|)"
    R"(clock_settime|swapon|swapoff|tcsetattr|tcsetpgrp|syslog|openlog|pam_start|)"
    R"(posix_spawnp?|fork|vfork|execvp?e?|execlp?e?|system|popen)\s*\()"
    R"(|"/(dev|proc|sys)\b)");

struct Listed {
    const char* file;
    const char* call;  // the text matched: a call's name or a path's start
    const char* routed;
};

// Every call, where it is, and why it cannot touch the machine when the host
// root is simulated.
const Listed kListed[] = {
    {"app/startup.cpp", "ioctl", "KDGKBTYPE on descriptor 1 only asks what the terminal is"},
    {"app/startup.cpp", "kill", "signal 0: only asks whether the pid file's process lives"},
    {"app/startup.cpp", "\"/proc", "reads program paths; changes nothing"},
    {"platform/pid_text.cpp", "\"/proc", "reads the kernel's pid limit; changes nothing"},
    {"app/startup.cpp", "\"/dev", "/dev/null for stderr"},
    {"app/startup.cpp", "tcsetattr", "the console's own terminal, put back on every way out"},
    {"ui/terminal.cpp", "ioctl", "TIOCGWINSZ on the console's own terminal: reads its size"},
    {"ui/terminal_restore.cpp", "tcsetattr",
     "the console's own terminal: flow control off, the settings found put back"},
    {"session/log_viewer.cpp", "tcsetattr", "the console's own terminal, handed to the pager"},
    {"session/log_viewer.cpp", "tcsetpgrp", "the console's own terminal's foreground group"},
    {"session/log_viewer.cpp", "posix_spawn", "the pager of the host root (HostPath)"},
    {"session/log_viewer.cpp", "kill", "SIGCONT / ending signals to the pager's own process group"},
    {"session/log_viewer.cpp", "ioctl", "TIOCGWINSZ on the console's own terminal: reads its size"},
    {"session/log_viewer.cpp", "syscall", "pidfd_open on the pager, its own child"},
    {"admin/pam_auth.cpp", "pam_start",
     "through pam_wrapper to the root's users; a simulated root's platform hooks refuse it "
     "without"},
    {"host/runner.cpp", "fork", "a child for a host tool of the host root"},
    {"host/runner.cpp", "execve",
     "host tools of the host root (HostPath), environment PYTHONHOME=/ only"},
    {"host/runner.cpp", "syscall", "pidfd_open on its own child"},
    {"host/runner.cpp", "kill", "SIGTERM/SIGKILL to its own child's process group"},
    {"simhost/change_record.cpp", "kill",
     "signal 0: only asks whether the process that recorded a change lives"},
    {"platform/hostroot.cpp", "\"/dev", "device paths are left as they are (no device is opened)"},
    {"platform/vt.cpp", "\"/dev",
     "/dev/console in the machine's platform hooks only; a "
     "simulated root's hooks record the terminal"},
    {"platform/vt.cpp", "ioctl",
     "VT_ACTIVATE in the machine's platform hooks only; a "
     "simulated root's hooks record the terminal"},
    {"platform/syslog.cpp", "openlog", "names the console; no connection is made by it"},
    {"platform/syslog.cpp", "syslog",
     "the machine's platform hooks only; a simulated root's write its syslog.log"},
    {"platform/audit.cpp", "syslog",
     "the machine's platform hooks only; a simulated root's write its audit.log"},
    {"platform/nox.cpp", "syslog",
     "the machine's platform hooks only; a simulated root's write its noxd.log"},
};

// The call a match names: "ioctl", "kill", ... or "\"/dev" for a path.
std::string CallName(const std::smatch& match) {
    if (match[1].matched)
        return match[1].str().starts_with("posix_spawn") ? "posix_spawn" : match[1].str();
    return "\"/" + match[2].str();
}

std::string WithoutComment(const std::string& line) {
    const auto comment = line.find("//");
    return comment == std::string::npos ? line : line.substr(0, comment);
}

TEST(MachineCalls, EveryCallThatCouldReachTheMachineIsListedWithItsRoute) {
    std::set<std::pair<std::string, std::string>> found;
    std::string unlisted;
    for (const char* folder : kConsoleFolders) {
        for (const auto& entry : fs::recursive_directory_iterator(kSources / folder)) {
            const std::string ext = entry.path().extension();
            if (ext != ".cpp" && ext != ".h") continue;
            const std::string file = fs::relative(entry.path(), kSources).string();
            if (file.starts_with("ui/gallery/")) continue;
            std::ifstream in(entry.path());
            std::string line;
            for (int number = 1; std::getline(in, line); ++number) {
                const std::string code = WithoutComment(line);
                for (std::sregex_iterator it(code.begin(), code.end(), kMachineCall), end;
                     it != end; ++it) {
                    const std::string call = CallName(*it);
                    found.insert({file, call});
                    bool listed = false;
                    for (const Listed& l : kListed)
                        listed = listed || (file == l.file && call == l.call);
                    if (!listed)
                        unlisted += "  " + file + ":" + std::to_string(number) + ": " + call +
                                    "  " + line + "\n";
                }
            }
        }
    }
    EXPECT_EQ(unlisted, "") << "calls that could reach the machine, not listed with the way "
                               "they are kept to the real host root";
    for (const Listed& l : kListed)
        EXPECT_TRUE(found.count({l.file, l.call}))
            << "listed but gone: " << l.file << " " << l.call;
}

TEST(MachineCalls, ASimulatedRootRecordsItsTerminalAndNeverAuthenticatesAgainstTheMachine) {
    SimRoot root;
    SessionOptions options = RemoteShell();
    options.pamWrapper = false;
    options.args = {"12"};
    ConsoleSession console(root, options);
    ASSERT_TRUE(LogInRefused(console));
    EXPECT_TRUE(root.hasLogLine("Login refused: PAM does not go to the simulated host's users"));
    EXPECT_TRUE(root.hasLogLine("Activated virtual terminal 12 of the simulated host"));
    EXPECT_EQ(root.stateValue("/console/activeVt"), Json(12));
}

}  // namespace
