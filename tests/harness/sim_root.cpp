#include "tests/harness/sim_root.h"

#include <crypt.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "store/replace_file.h"
#include "store/state_lock.h"

namespace TeskTest {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

namespace {

constexpr const char kStateFile[] = "/var/lib/simhost/state.json";

// Runs a command line through the shell, its stdout and stderr collected.
// Returns the wait status.
int RunCollecting(const std::string& command, std::string& output) {
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe) throw std::runtime_error(std::string("popen: ") + std::strerror(errno));
    char buf[4096];
    for (size_t n; (n = std::fread(buf, 1, sizeof buf, pipe)) > 0;) output.append(buf, n);
    return ::pclose(pipe);
}

// A word for the shell's command line.
std::string Quoted(const std::string& word) {
    std::string quoted = "'";
    for (char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// A name for the root's folder that tells which test made it.
std::string FolderPrefix() {
    std::string name = "tesk-root";
    if (const auto* info = ::testing::UnitTest::GetInstance()->current_test_info()) {
        name = std::string(info->test_suite_name()) + "." + info->name();
        for (char& c : name)
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '.' && c != '-') c = '_';
        if (name.size() > 80) name.resize(80);
    }
    return name;
}

Json ParseState(const std::string& path, const std::optional<std::string>& text) {
    if (!text) throw std::runtime_error("no simulated host state in " + path);
    return Json::parse(*text);
}

}  // namespace

const std::string& TeskBinary() {
    static const std::string path = TESK_BINARY;
    return path;
}

const std::string& SimBinary() {
    static const std::string path = TESK_SIM_BINARY;
    return path;
}

std::chrono::milliseconds Scaled(std::chrono::milliseconds timeout) {
    static const double scale = [] {
        const char* text = std::getenv("TESK_TEST_TIMEOUT_SCALE");
        double value = text ? std::strtod(text, nullptr) : 1.0;
        return value > 0 ? value : 1.0;
    }();
    return std::chrono::milliseconds(
        static_cast<long long>(static_cast<double>(timeout.count()) * scale));
}

std::string PasswordHash(const std::string& password) {
    if (password.empty()) return {};
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    crypt_data data{};
    const char* hash = crypt_gensalt_rn("$y$", 0, nullptr, 0, setting, sizeof setting)
                           ? crypt_r(password.c_str(), setting, &data)
                           : nullptr;
    if (hash == nullptr || hash[0] != '$') throw std::runtime_error("libcrypt cannot hash");
    return hash;
}

std::chrono::milliseconds DefaultTimeout() {
    return Scaled(std::chrono::seconds(10));
}

SimRoot::SimRoot(const std::string& profile) {
    std::string pattern = (fs::temp_directory_path() / (FolderPrefix() + ".XXXXXX")).string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a temporary directory " + pattern + ": " +
                                 std::strerror(errno));
    path_ = pattern;
    std::string output;
    int status = RunCollecting(
        Quoted(SimBinary()) + " init " + Quoted(path_) + " --profile " + Quoted(profile), output);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::error_code ec;
        fs::remove_all(path_, ec);
        throw std::runtime_error("tesk-sim init " + path_ + " --profile " + profile +
                                 " failed (wait status " + std::to_string(status) + "): " + output);
    }
}

SimRoot::~SimRoot() {
    if (const char* keep = std::getenv("TESK_KEEP_ROOTS"); keep && *keep && keep != "0"sv) {
        std::cerr << "[ harness  ] kept simulated host root " << path_ << "\n";
        return;
    }
    std::error_code ec;
    fs::remove_all(path_, ec);
}

std::string SimRoot::path(std::string_view hostPath) const {
    while (!hostPath.empty() && hostPath.front() == '/') hostPath.remove_prefix(1);
    return hostPath.empty() ? path_ : path_ + "/" + std::string(hostPath);
}

bool SimRoot::exists(std::string_view hostPath) const {
    std::error_code ec;
    return fs::exists(path(hostPath), ec);
}

std::optional<std::string> SimRoot::tryReadFile(std::string_view hostPath) const {
    std::ifstream in(path(hostPath), std::ios::binary);
    if (!in) return std::nullopt;
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string SimRoot::readFile(std::string_view hostPath, std::source_location where) const {
    auto text = tryReadFile(hostPath);
    if (!text) {
        ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line()))
            << "cannot read " << path(hostPath);
        return {};
    }
    return *text;
}

void SimRoot::writeFile(std::string_view hostPath, std::string_view text) const {
    fs::path file = path(hostPath);
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

Json SimRoot::state() const {
    std::string file = path(kStateFile);
    Sim::StateLock lock(file, Sim::StateLock::Mode::Shared);
    return ParseState(file, tryReadFile(kStateFile));
}

std::optional<Json> SimRoot::stateValue(const std::string& pointer) const {
    Json whole = state();
    Json::json_pointer ptr(pointer);
    if (!whole.contains(ptr)) return std::nullopt;
    return whole.at(ptr);
}

void SimRoot::editState(const std::function<void(Json&)>& change) const {
    std::string file = path(kStateFile);
    Sim::StateLock lock(file, Sim::StateLock::Mode::Exclusive);
    Json whole = ParseState(file, tryReadFile(kStateFile));
    change(whole);
    Sim::ReplaceFile(file, whole.dump(2) + "\n", 0644);
}

void SimRoot::setFault(const std::string& name, const Json& fault) const {
    editState([&](Json& s) {
        if (!s["faults"].is_object()) s["faults"] = Json::object();
        if (fault.is_null()) {
            s["faults"].erase(name);
        } else {
            s["faults"][name] = fault;
        }
    });
}

std::vector<std::string> SimRoot::logLines(std::string_view file) const {
    std::vector<std::string> lines;
    std::istringstream in(tryReadFile(file).value_or(""));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> SimRoot::logLinesWith(std::string_view text, std::string_view file) const {
    std::vector<std::string> found;
    for (auto& line : logLines(file))
        if (line.find(text) != std::string::npos) found.push_back(std::move(line));
    return found;
}

::testing::AssertionResult SimRoot::hasLogLine(std::string_view text, std::string_view file) const {
    if (!logLinesWith(text, file).empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "no line with \"" << text << "\" in " << path(file) << "; its last lines:\n"
           << logTail(file);
}

bool SimRoot::waitForLogLine(std::string_view text, std::chrono::milliseconds timeout,
                             std::string_view file, std::source_location where) const {
    // The log is a plain file: look again every few milliseconds.
    auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (!logLinesWith(text, file).empty()) return true;
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line()))
        << "no line with \"" << text << "\" in " << path(file) << " within " << timeout.count()
        << " ms; its last lines:\n"
        << logTail(file);
    return false;
}

std::string SimRoot::logTail(std::string_view file, size_t n) const {
    auto lines = logLines(file);
    std::string tail;
    size_t first = lines.size() > n ? lines.size() - n : 0;
    for (size_t i = first; i < lines.size(); ++i) tail += "  " + lines[i] + "\n";
    return tail.empty() ? "  (empty)\n" : tail;
}

}  // namespace TeskTest
