#include "app/event_loop.h"

#include <curses.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "app/flags.h"
#include "app/keys.h"
#include "app/terminal.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "ui/window.h"

namespace Tesk {

namespace {

int g_pipe[2] = {-1, -1};
int g_inputFd = 0;
sigset_t g_signals;

constexpr long kDimDelaySeconds = 60;

void* SignalThread(void*) {
    for (;;) {
        int sig = 0;
        if (::sigwait(&g_signals, &sig) != 0) {
            Platform::LogSystemError("sigwait() failed");
            continue;
        }
        char byte = 0;
        switch (sig) {
            case SIGUSR1:
                byte = 1;
                break;
            case SIGUSR2:
                byte = 2;
                break;
            case SIGWINCH:
                byte = 3;
                break;
            case SIGINT:
            case SIGQUIT:
            case SIGTERM:
                byte = 4;
                break;
            default:
                continue;
        }
        while (::write(g_pipe[1], &byte, 1) <= 0 && errno == EINTR) {
        }
    }
    return nullptr;
}

timeval RealNow() {
    timeval tv{};
    ::gettimeofday(&tv, nullptr);
    return tv;
}

bool Later(const timeval& a, const timeval& b) {
    return a.tv_sec > b.tv_sec || (a.tv_sec == b.tv_sec && a.tv_usec > b.tv_usec);
}

timeval Remaining(const timeval& deadline, const timeval& now) {
    timeval r{deadline.tv_sec - now.tv_sec, deadline.tv_usec - now.tv_usec};
    if (r.tv_usec < 0) {
        r.tv_sec -= 1;
        r.tv_usec += 1000000;
    }
    return r;
}

}  // namespace

void StartSignalHandling() {
    if (::pipe2(g_pipe, O_CLOEXEC) != 0) {
        Platform::LogSystemError("pipe() failed");
        std::exit(1);
    }
    sigemptyset(&g_signals);
    for (int s : {SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH}) sigaddset(&g_signals, s);
    int rc = ::pthread_sigmask(SIG_BLOCK, &g_signals, nullptr);
    if (rc != 0) {
        errno = rc;
        Platform::LogSystemError("pthread_sigmask() failed");
    }
    pthread_t thread;
    rc = ::pthread_create(&thread, nullptr, &SignalThread, nullptr);
    if (rc != 0) {
        errno = rc;
        Platform::LogSystemError("pthread_create() failed");
        std::exit(1);
    }
}

int WaitForInput(const timeval* limit) {
    pollfd fds[2] = {{g_inputFd, POLLIN, 0}, {g_pipe[0], POLLIN, 0}};
    int timeoutMs = -1;
    if (limit) timeoutMs = static_cast<int>(limit->tv_usec / 1000 + limit->tv_sec * 1000);
    int n = ::poll(fds, 2, timeoutMs);
    if (n < 0) {
        Platform::LogSystemError("poll() failed");
        return EventNone;
    }
    if (n == 0) return EventTimeout;
    if (fds[0].revents & (POLLIN | POLLHUP | POLLERR)) {
        wtimeout(stdscr, 0);
        int key = wgetch(stdscr);
        wtimeout(stdscr, -1);
        return key == ERR ? EventNone : key;
    }
    if (fds[1].revents & POLLIN) {
        unsigned char byte = 0;
        ssize_t r;
        while ((r = ::read(g_pipe[0], &byte, 1)) < 1 && errno == EINTR) {
        }
        if (r == 1 && byte >= 1 && byte <= 4) return -(2 + byte);
        return EventNone;
    }
    return EventNone;
}

KeyReaderHooks& Hooks() {
    static KeyReaderHooks hooks{&RealNow, &WaitForInput};
    return hooks;
}

void ResetHooks() {
    Hooks() = KeyReaderHooks{&RealNow, &WaitForInput};
}

int ReadKey(Window* w, bool allowIdleTimeout) {
    ProcessFlags& flags = Flags();
    const bool idleActive = allowIdleTimeout && flags.idleTimeout != 0;
    const timeval start = Hooks().now();
    const timeval dimAt{start.tv_sec + kDimDelaySeconds, start.tv_usec};
    const long idle = flags.idleTimeout < 60 ? 60 : flags.idleTimeout;
    const timeval expiry{start.tv_sec + idle, start.tv_usec};
    bool dimmed = false;

    for (;;) {
        const timeval now = Hooks().now();
        if (idleActive && Later(now, expiry)) {
            flags.currentWindow = nullptr;
            throw TeskTimeout();
        }
        std::optional<timeval> limit;
        if (!dimmed && !Later(now, dimAt)) {
            limit = Remaining(dimAt, now);
        } else {
            if (!dimmed) {
                if (w) {
                    w->setActive(false);
                    w->redraw();
                }
                dimmed = true;
            }
            if (idleActive) limit = Remaining(expiry, now);
        }
        int result = Hooks().wait(limit ? &*limit : nullptr);
        switch (result) {
            case EventTimeout:
                continue;
            case EventSmartCard:
                if (flags.currentWindow) flags.currentWindow->notify();
                SmartCardCheck();
                continue;
            case EventRestart:
                if (!flags.sessionActive) std::exit(0);
                flags.restartPending = true;
                continue;
            case EventResize:
            case KEY_RESIZE:
                ResizeTerminal();
                std::exit(0);
            case EventQuit:
                std::exit(0);
            default:
                break;
        }
        if (result < 0) continue;
        if (dimmed) {
            clearok(curscr, TRUE);
            if (w) {
                w->setActive(true);
                w->redraw();
            }
        }
        return result;
    }
}

void SetSessionActive(bool active) {
    Flags().sessionActive = active;
    if (active) Flags().idleTimeout = ReadIdleTimeout();
}

bool CardWithUserIdPresent(const std::string& userId) {
    std::unique_ptr<HostCtl::Hardware::SmartCardInfo> cards;
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    try {
        cards = HostCtl::TheBackend().GetSmartCardInfo();
        slots = cards->GetAllSlots();
    } catch (const HostCtl::Lib::HostCtlException&) {
        return false;
    }
    for (const auto& slot : slots) {
        try {
            for (const auto& id : cards->GetToken(slot).userIds)
                if (id == userId) return true;
        } catch (const HostCtl::Lib::HostCtlException&) {
        }
    }
    return false;
}

void BindSessionToCard(const std::string& userId) {
    Flags().sessionCardUserId = userId;
    Flags().cardBoundSession = CardWithUserIdPresent(userId);
}

const std::string& DetectedCardUserId() {
    return Flags().detectedCardUserId;
}

std::string ReadCardUserId() {
    std::unique_ptr<HostCtl::Hardware::SmartCardInfo> cards;
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    try {
        cards = HostCtl::TheBackend().GetSmartCardInfo();
        slots = cards->GetAllSlots();
    } catch (const HostCtl::Lib::HostCtlException&) {
        return {};
    }
    for (const auto& slot : slots) {
        try {
            for (const auto& id : cards->GetToken(slot).userIds)
                if (!id.empty()) return id;
        } catch (const HostCtl::Lib::HostCtlException&) {
        }
    }
    return {};
}

void SmartCardCheck() {
    ProcessFlags& flags = Flags();
    if (!flags.sessionActive) {
        flags.detectedCardUserId = ReadCardUserId();
        if (!flags.detectedCardUserId.empty())
            Platform::Log(LOG_INFO, "Found smart card with user id '%s'",
                          flags.detectedCardUserId.c_str());
        return;
    }
    if (flags.cardBoundSession && !CardWithUserIdPresent(flags.sessionCardUserId)) {
        Platform::Log(LOG_INFO, "Logging out user id '%s'", flags.sessionCardUserId.c_str());
        std::exit(0);
    }
}

void SetInputDescriptorForTesting(int fd) {
    g_inputFd = fd;
}
int WakeupPipeWriteEndForTesting() {
    return g_pipe[1];
}

}  // namespace Tesk
