// The lab screen tests' shared steps (lab_support.h).
#include "tests/linuxnet/lab_support.h"
#include "tests/harness/lab_environment.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tests/harness/keys.h"
#include "tests/session/session_support.h"

namespace LabNet {

namespace Key = TeskTest::Key;

bool InLab() {
    return Env("TESK_BACKEND") == "linux" && !Env("LAB_PEER_NETNS").empty();
}

TeskTest::SessionOptions LabSession() {
    TeskTest::SessionOptions options;
    options.cols = 100;
    options.rows = 30;
    TeskTest::PassLabEnvironment(options);
    return options;
}

std::string Run(const std::string& command) {
    std::string out;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
        ::pclose(pipe);
    }
    return out;
}

std::string ManagementFile() {
    return ReadFile(Env("TESK_ROOT") + "/etc/systemd/network/60-tesk-br0.network");
}

void InstallNetwork() {
    const std::string to = Env("TESK_ROOT") + "/etc/systemd/network";
    for (const auto& file : std::filesystem::directory_iterator(TESK_LAB_INSTALLED_NETWORK))
        std::filesystem::copy_file(file.path(), to + "/" + file.path().filename().string(),
                                   std::filesystem::copy_options::overwrite_existing);
    std::system("networkctl reload");
}

bool KernelHas(ConsoleSession& console, const std::string& address, bool present) {
    return console.waitFor(
        [&] {
            const bool has = Run("ip -o addr show dev br0 2>/dev/null").find(" " + address + "/") !=
                             std::string::npos;
            return has == present;
        },
        std::string("br0 to ") + (present ? "have " : "lose ") + address, std::chrono::seconds(60));
}

bool Settled(ConsoleSession& console, std::string_view text, ConsoleSession::Timeout timeout) {
    return console.waitForText(text, timeout) && console.waitForQuiet();
}

bool LogIn(ConsoleSession& console) {
    if (!console.waitForText("<F2>")) return false;
    console.key(Key::F(2));
    if (!SessionTest::WaitCaretOn(console, "Login Name:")) return false;
    console.key(Key::Down);
    if (!SessionTest::WaitCaretOn(console, "Password:")) return false;
    console.type("tesk-demo");
    console.key(Key::Enter);
    return console.waitForText("System Customization");
}

std::string RunNetworkTest(ConsoleSession& console) {
    if (!LabSelect(console, "Test Management Network")) return {};
    console.key(Key::Enter);
    if (!Settled(console, "Resolve Hostname")) return {};
    console.key(Key::Enter);
    if (!Settled(console, "Done.", std::chrono::seconds(60))) return {};
    const std::string text = console.text();
    console.key(Key::Enter);
    console.waitForTextGone("Done.");
    return text;
}

}  // namespace LabNet
