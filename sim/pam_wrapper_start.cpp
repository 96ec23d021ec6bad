// The machine-wide lock around the starts of programs that preload
// pam_wrapper (see the header).
#include "sim/pam_wrapper_start.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

namespace Sim {

namespace {

constexpr char kLockFile[] = "/tmp/tesk-pam-wrapper-start.lock";
constexpr std::string_view kCharacters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// Whether one of pam_wrapper's directories names pid as its owner.
bool HasDirectory(pid_t pid) {
    const std::string owner = std::to_string(pid);
    for (char c : kCharacters) {
        std::ifstream file(std::string("/tmp/pam.") + c + "/pid");
        std::string text;
        if (file && std::getline(file, text) && text == owner) return true;
    }
    return false;
}

}  // namespace

PamWrapperStart::PamWrapperStart() {
    // Read-only is enough for flock, and lets every user open a file that
    // another user made.
    fd_ = ::open(kLockFile, O_RDONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd_ < 0) return;  // without the lock the start is as racy as before
    while (::flock(fd_, LOCK_EX) != 0 && errno == EINTR) {
    }
}

PamWrapperStart::~PamWrapperStart() {
    if (fd_ >= 0) ::close(fd_);
}

void PamWrapperStart::started(pid_t pid, const std::function<bool()>& ended,
                              std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!HasDirectory(pid) && !ended() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
}

}  // namespace Sim
