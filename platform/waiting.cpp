// The quit notice (an eventfd that stays readable once written) and the
// slow-wait notifier of the thread that installed it.
#include "platform/waiting.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>

namespace Tesk::Platform {

namespace {

std::atomic<bool> g_quit{false};

int QuitEvent() {
    static const int fd = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return fd;
}

struct Notifier {
    std::mutex mutex;
    SlowWaitNotifier call;
    std::thread::id owner;
};

Notifier& TheNotifier() {
    static Notifier notifier;
    return notifier;
}

}  // namespace

void NoteQuitRequest() {
    g_quit = true;
    const std::uint64_t one = 1;
    if (QuitEvent() >= 0) {
        ssize_t ignored = ::write(QuitEvent(), &one, sizeof one);
        (void)ignored;
    }
}

bool QuitRequested() {
    return g_quit;
}

int QuitDescriptor() {
    return QuitEvent();
}

void ResetQuitRequestForTesting() {
    g_quit = false;
    std::uint64_t count = 0;
    if (QuitEvent() >= 0) {
        ssize_t ignored = ::read(QuitEvent(), &count, sizeof count);
        (void)ignored;
    }
}

void SetSlowWaitNotifier(SlowWaitNotifier notifier) {
    Notifier& n = TheNotifier();
    std::lock_guard guard(n.mutex);
    n.call = std::move(notifier);
    n.owner = std::this_thread::get_id();
}

void NotifySlowWait(bool waiting) {
    Notifier& n = TheNotifier();
    SlowWaitNotifier call;
    {
        std::lock_guard guard(n.mutex);
        if (!n.call || n.owner != std::this_thread::get_id()) return;
        call = n.call;
    }
    call(waiting);
}

void PauseUnlessQuit(std::chrono::milliseconds duration) {
    pollfd quit{QuitDescriptor(), POLLIN, 0};
    ::poll(&quit, quit.fd >= 0 ? 1 : 0, static_cast<int>(duration.count()));
}

bool WaitForInput(int fd, std::chrono::steady_clock::time_point deadline) {
    while (!QuitRequested()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                              deadline - std::chrono::steady_clock::now())
                              .count();
        if (left <= 0) return false;
        pollfd fds[2] = {{fd, POLLIN, 0}, {QuitDescriptor(), POLLIN, 0}};
        if (::poll(fds, fds[1].fd >= 0 ? 2 : 1, static_cast<int>(left)) <= 0) continue;
        if ((fds[0].revents & POLLIN) != 0) return true;
    }
    return false;
}

}  // namespace Tesk::Platform
