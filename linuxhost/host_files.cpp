#include "linuxhost/host_files.h"

#include <cerrno>
#include <cstring>
#include <sstream>

#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

bool IsName(std::string_view name) {
    if (name.empty() || (name[0] >= '0' && name[0] <= '9')) return false;
    for (char c : name)
        if (!(c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
              (c >= '0' && c <= '9')))
            return false;
    return true;
}

// The name of the line's assignment; empty when the line is none.
std::string_view AssignedName(std::string_view line) {
    line = Trim(line);
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return {};
    const auto name = line.substr(0, equals);
    return IsName(name) ? name : std::string_view();
}

std::string Unquote(std::string_view value) {
    value = Trim(value);
    std::string out;
    char quote = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == quote) {
            quote = 0;
        } else if (c == '\\' && quote != '\'' && i + 1 < value.size()) {
            out += value[++i];
        } else if (quote == 0 && (c == ' ' || c == '\t' || c == '#')) {
            break;
        } else {
            out += c;
        }
    }
    return out;
}

std::string Quote(std::string_view value) {
    std::string out = "\"";
    for (char c : value) {
        if (c == '"' || c == '\\' || c == '$' || c == '`') out += '\\';
        out += c;
    }
    return out + "\"";
}

}  // namespace

std::optional<std::string> ReadHostFile(std::string_view path) {
    std::string failure;
    auto text = Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(path), &failure);
    const bool missing = !text && failure == std::strerror(ENOENT);
    // The kernel's own view, where a host root does not stand in for it.
    if (missing && path.starts_with("/proc/") && Tesk::Platform::IsSimulatedRoot())
        return Tesk::Platform::ReadRegularFile(std::string(path));
    if (!text && !missing)
        Tesk::Platform::Log(LOG_ERR, "Reading %.*s failed: %s", static_cast<int>(path.size()),
                            path.data(), failure.c_str());
    return text;
}

std::string ReadHostLine(std::string_view path) {
    const auto text = ReadHostFile(path);
    if (!text) return {};
    return std::string(Trim(std::string_view(*text).substr(0, text->find('\n'))));
}

std::map<std::string, std::string> ParseShellAssignments(std::string_view text) {
    std::map<std::string, std::string> values;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        const std::string_view name = AssignedName(line);
        if (name.empty()) continue;
        const std::string_view trimmed = Trim(line);
        values[std::string(name)] = Unquote(trimmed.substr(name.size() + 1));
    }
    return values;
}

std::string SetShellAssignment(std::string_view text, std::string_view key,
                               std::string_view value) {
    const std::string assignment = std::string(key) + "=" + Quote(value);
    std::string out;
    bool set = false;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        if (AssignedName(line) == key) {
            if (set) continue;
            line = assignment;
            set = true;
        }
        out += line + "\n";
    }
    if (!set) out += assignment + "\n";
    return out;
}

}  // namespace LinuxHost
