#include "linuxhost/keyboard.h"

#include <sstream>
#include <stdexcept>

#include "host/runner.h"
#include "hostctl/exception.h"
#include "linuxhost/host_files.h"
#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost::Keyboard {
namespace {

using HostCtl::Lib::HostCtlException;

// setupcon compiles a key map first: a slow host may take a while.
constexpr int kSetupconTimeLimit = 60;

Layout RequireLayout(const std::string& description) {
    for (auto& layout : InstalledLayouts())
        if (layout.description == description) return layout;
    throw HostCtlException("Unknown keyboard layout '" + description + "'");
}

}  // namespace

std::vector<Layout> ParseLayoutList(std::string_view text) {
    std::vector<Layout> layouts;
    bool inSection = false;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line[0] == '!') {
            inSection = line.find("layout") != std::string::npos &&
                        line.find_first_not_of("! ") == line.find("layout");
            continue;
        }
        if (!inSection) continue;
        std::istringstream fields(line);
        Layout layout;
        if (!(fields >> layout.code)) continue;
        std::getline(fields >> std::ws, layout.description);
        if (layout.description.empty()) layout.description = layout.code;
        layouts.push_back(std::move(layout));
    }
    return layouts;
}

std::vector<Layout> InstalledLayouts() {
    const auto text = ReadHostFile(kLayoutList);
    if (!text)
        throw HostCtlException(std::string("The keyboard layouts (") + kLayoutList +
                               ") cannot be read");
    return ParseLayoutList(*text);
}

std::string CurrentLayout() {
    const auto values = ParseShellAssignments(ReadHostFile(kKeyboardFile).value_or(""));
    const auto found = values.find("XKBLAYOUT");
    if (found == values.end() || found->second.empty()) return {};
    // Of several layouts ("us,de") the first is the one in use.
    const std::string code = found->second.substr(0, found->second.find(','));
    for (const auto& layout : ParseLayoutList(ReadHostFile(kLayoutList).value_or("")))
        if (layout.code == code) return layout.description;
    return code;
}

namespace {

void ReplaceKeyboardFile(const std::string& text) {
    try {
        Sim::ReplaceFile(Tesk::Platform::HostPath(kKeyboardFile), text, 0644);
    } catch (const std::runtime_error& error) {
        Tesk::Platform::Log(LOG_ERR, "Writing %s failed: %s", kKeyboardFile, error.what());
        throw HostCtlException(std::string("The keyboard layout could not be written to ") +
                               kKeyboardFile);
    }
}

}  // namespace

void WriteLayout(const std::string& description) {
    const Layout layout = RequireLayout(description);
    std::string text = ReadHostFile(kKeyboardFile).value_or("");
    text = SetShellAssignment(text, "XKBLAYOUT", layout.code);
    text = SetShellAssignment(text, "XKBVARIANT", "");
    ReplaceKeyboardFile(text);
}

void ApplyLayout(const std::string& description) {
    const auto before = ReadHostFile(kKeyboardFile);
    WriteLayout(description);
    const char* const argv[] = {"setupcon", "-k", nullptr};
    const Tesk::CommandOutcome outcome = Tesk::RunCommandDetailed(
        kSetupcon, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, kSetupconTimeLimit);
    if (outcome.result() == 0) return;
    Tesk::Platform::Log(LOG_ERR, "%s -k failed: %s", kSetupcon, outcome.describe().c_str());
    // The configured layout stays the one the console runs with.
    if (before) ReplaceKeyboardFile(*before);
    throw HostCtlException("The keyboard layout could not be applied (setupcon " +
                           outcome.describe() + ")");
}

}  // namespace LinuxHost::Keyboard
