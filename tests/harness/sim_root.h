// A fresh simulated host root for one test: made by tesk-sim from a profile,
// removed again when the test is done.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace TeskTest {

using Json = nlohmann::json;

// The programs under test, as the build placed them.
const std::string& TeskBinary();
const std::string& SimBinary();

// How long a wait lasts unless the test says otherwise: 10 s, multiplied by
// TESK_TEST_TIMEOUT_SCALE when that is set (slow sanitizer builds).
std::chrono::milliseconds DefaultTimeout();

// A timeout scaled by TESK_TEST_TIMEOUT_SCALE.
std::chrono::milliseconds Scaled(std::chrono::milliseconds timeout);

// A crypt(3) hash of password as the root's PAM user file keeps it
// ("name:hash:outcome" per line); the empty password gives the empty text.
std::string PasswordHash(const std::string& password);

class SimRoot {
public:
    // Makes the root in a new temporary directory by running
    // "tesk-sim init DIR --profile NAME". Throws std::runtime_error with
    // tesk-sim's own output when that fails.
    explicit SimRoot(const std::string& profile = "default");
    // Removes the directory, unless TESK_KEEP_ROOTS is set in the environment;
    // then the kept path is printed.
    ~SimRoot();
    SimRoot(const SimRoot&) = delete;
    SimRoot& operator=(const SimRoot&) = delete;

    const std::string& path() const { return path_; }
    // A file of the host inside the root: "/var/log/syslog.log" and
    // "var/log/syslog.log" both give "<root>/var/log/syslog.log".
    std::string path(std::string_view hostPath) const;

    bool exists(std::string_view hostPath) const;
    // The whole file; std::nullopt when it cannot be read.
    std::optional<std::string> tryReadFile(std::string_view hostPath) const;
    // The whole file; an empty string plus a test failure when it cannot be read.
    std::string readFile(std::string_view hostPath,
                         std::source_location where = std::source_location::current()) const;
    void writeFile(std::string_view hostPath, std::string_view text) const;

    // The host's state document (var/lib/simhost/state.json). Reads and
    // changes take the same lock the console and the host tools take.
    Json state() const;
    // A value by JSON pointer ("/users/0/password").
    std::optional<Json> stateValue(const std::string& pointer) const;
    // Reads, changes and writes the state in one locked step.
    void editState(const std::function<void(Json&)>& change) const;
    // Sets the fault "/faults/<name>" (see the host tools), or clears it with null.
    void setFault(const std::string& name, const Json& fault) const;

    // Lines of a log file (default the syslog mirror), without line ends.
    std::vector<std::string> logLines(std::string_view file = kSyslog) const;
    std::vector<std::string> logLinesWith(std::string_view text,
                                          std::string_view file = kSyslog) const;
    // True when some line of the log contains text; on failure the message
    // shows the log's last lines.
    ::testing::AssertionResult hasLogLine(std::string_view text,
                                          std::string_view file = kSyslog) const;
    // Waits until a line containing text appears in the log (the console
    // writes its log lines after the screen changes, so a test waits for them).
    // Fails the test, at the caller's line, when the time runs out.
    bool waitForLogLine(std::string_view text, std::chrono::milliseconds timeout = DefaultTimeout(),
                        std::string_view file = kSyslog,
                        std::source_location where = std::source_location::current()) const;

    std::string logTail(std::string_view file = kSyslog, size_t n = 15) const;

    static constexpr std::string_view kSyslog = "/var/log/syslog.log";

private:
    std::string path_;
};

}  // namespace TeskTest
