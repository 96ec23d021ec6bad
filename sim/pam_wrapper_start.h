// Starts of programs that preload pam_wrapper, one at a time on the machine
// (tesk-sim's console and the screen tests' programs). pam_wrapper makes a directory /tmp/pam.<one
// character> when a program starts and removes it when the program ends. It picks the character by
// a check and a mkdir that are not one step, so two programs starting together can pick the same
// directory, and the first to end removes it under the other, whose logins then fail. A start holds
// this lock, a file in /tmp shared by every process that starts one, until its program has made its
// directory.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>

namespace Sim {

class PamWrapperStart {
public:
    PamWrapperStart();  // waits for the lock
    ~PamWrapperStart();
    PamWrapperStart(const PamWrapperStart&) = delete;
    PamWrapperStart& operator=(const PamWrapperStart&) = delete;

    // Holds the lock until program pid has its directory, ended() says it
    // has ended, or the limit has passed; then lets the next start go.
    void started(pid_t pid, const std::function<bool()>& ended, std::chrono::milliseconds limit);

private:
    int fd_ = -1;
};

}  // namespace Sim
