#include "sim/state.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/hostroot.h"

namespace Sim {
namespace {

namespace fs = std::filesystem;

// An flock on "<state>.lock", released when it goes out of scope.
class StateLock {
public:
    explicit StateLock(int operation) {
        std::string path = StatePath() + ".lock";
        fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (fd_ < 0) return;  // no lock without a state folder; reads still work
        while (::flock(fd_, operation) != 0 && errno == EINTR) {
        }
    }
    ~StateLock() {
        if (fd_ >= 0) ::close(fd_);
    }
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;

private:
    int fd_ = -1;
};

Json ReadUnlocked() {
    std::ifstream in(StatePath());
    if (!in) throw std::runtime_error("simulated host state not found: " + StatePath());
    std::stringstream text;
    text << in.rdbuf();
    try {
        return Json::parse(text.str());
    } catch (const Json::exception& e) {
        throw std::runtime_error("simulated host state cannot be read: " + std::string(e.what()));
    }
}

void WriteUnlocked(const Json& state) {
    fs::path path = StatePath();
    fs::create_directories(path.parent_path());
    fs::path tmp = path;
    tmp += ".tmp." + std::to_string(::getpid());
    {
        std::ofstream out(tmp, std::ios::trunc);
        if (!out) throw std::runtime_error("cannot write " + tmp.string());
        out << state.dump(2) << '\n';
        if (!out.flush()) throw std::runtime_error("cannot write " + tmp.string());
    }
    fs::rename(tmp, path);
}

}  // namespace

std::string StatePath() {
    return Tesk::Platform::HostPath("/var/lib/simhost/state.json");
}

bool HasState() {
    return ::access(StatePath().c_str(), R_OK) == 0;
}

Json Load() {
    StateLock lock(LOCK_SH);
    return ReadUnlocked();
}

void Update(const std::function<void(Json&)>& change) {
    StateLock lock(LOCK_EX);
    Json state = ReadUnlocked();
    change(state);
    WriteUnlocked(state);
}

void Save(const Json& state) {
    fs::create_directories(fs::path(StatePath()).parent_path());
    StateLock lock(LOCK_EX);
    WriteUnlocked(state);
}

std::optional<Json> Get(const std::string& pointer) {
    if (!HasState()) return std::nullopt;
    try {
        Json state = Load();
        Json::json_pointer ptr(pointer);
        if (!state.contains(ptr)) return std::nullopt;
        return state.at(ptr);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<Json> Fault(const std::string& name) {
    auto faults = Get("/faults");
    if (!faults || !faults->is_object()) return std::nullopt;
    auto it = faults->find(name);
    if (it == faults->end() || it->is_null()) return std::nullopt;
    return *it;
}

}  // namespace Sim
