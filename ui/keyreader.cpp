#include "ui/keyreader.h"

#include <curses.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>

#include "platform/syslog.h"
#include "platform/waiting.h"
#include "ui/keys.h"
#include "ui/terminal.h"
#include "ui/terminal_restore.h"
#include "ui/window.h"

namespace Tesk {

namespace {

int g_pipe[2] = {-1, -1};
int g_inputFd = 0;
// The descriptor WaitForInput also watches (SetWatchedDescriptor); -1: none.
int g_watchedFd = -1;
sigset_t g_signals;

KeySession* g_session = nullptr;

constexpr long kDimDelaySeconds = 60;

// After a quit signal the UI thread ends the console by itself: it notices
// at its next key wait, and a wait for a tool or the pager is cut short. Only
// a write to a terminal that takes no output (stopped, or never read) can
// hold it for good; once the terminal has taken nothing for kStuckOutput
// after the quit, or whatever holds it after kQuitBackstop, the signal thread
// ends the process itself with the terminal settings put back, as a kill
// would: no logout records, the pid file stays for the next console.
std::atomic<bool> g_endStuckQuits{false};
constexpr double kStuckOutput = 0.5;
constexpr double kQuitBackstop = 4.0;
constexpr timespec kQuitCheckStep{0, 100'000'000};

double Seconds() {
    timespec ts{};
    ::clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) / 1e9;
}

// Whether a write to the terminal would go through now (or fail at once).
bool TerminalTakesOutput() {
    pollfd out{1, POLLOUT, 0};
    return ::poll(&out, 1, 0) != 0;
}

// Watches the console end after a quit: quitAt is when the first quit
// signal came, lastTaken when the terminal last took output.
void CheckQuitProgress(double quitAt, double& lastTaken) {
    const double now = Seconds();
    if (TerminalTakesOutput()) lastTaken = now;
    const bool stuck = now - std::max(quitAt, lastTaken) >= kStuckOutput;
    if (!stuck && now - quitAt < kQuitBackstop) return;
    Platform::Log(LOG_ERR, stuck ? "Ending at once: the terminal takes no output"
                                 : "Ending at once: the console did not end by itself");
    RestoreFoundTerminal();
    ::_exit(0);
}

// The next signal; once quitting, a check of the console's progress every
// step in between. Returns 0 when no signal came.
int NextSignal(bool quitting, double quitAt, double& lastTaken) {
    if (!quitting || !g_endStuckQuits) {
        int sig = 0;
        if (::sigwait(&g_signals, &sig) == 0) return sig;
        Platform::LogSystemError("sigwait() failed");
        return 0;
    }
    const int sig = ::sigtimedwait(&g_signals, nullptr, &kQuitCheckStep);
    if (sig > 0) return sig;
    CheckQuitProgress(quitAt, lastTaken);
    return 0;
}

void* SignalThread(void*) {
    bool quitting = false;
    double quitAt = 0;
    double lastTaken = 0;
    for (;;) {
        const int sig = NextSignal(quitting, quitAt, lastTaken);
        char byte = 0;
        switch (sig) {
            case 0:
                continue;
            case SIGUSR1:
                byte = 1;
                break;
            case SIGUSR2:
                byte = 2;
                break;
            case SIGWINCH:
                byte = 3;
                break;
            case SIGHUP:  // the terminal went away: end as on SIGTERM
            case SIGINT:
            case SIGQUIT:
            case SIGTERM:
                Platform::NoteQuitRequest();  // ends a host tool the console waits for
                if (!quitting) quitAt = lastTaken = Seconds();
                quitting = true;
                byte = 4;
                break;
            default:  // SIGTSTP, SIGTTIN, SIGTTOU: nothing to do
                continue;
        }
        // The pipe's writing end does not block: a byte that finds it full is
        // dropped (the UI thread has thousands to read first; a quit is noted
        // in platform/ anyway).
        while (::write(g_pipe[1], &byte, 1) < 0 && errno == EINTR) {
        }
    }
    return nullptr;
}

// Idle time is measured on the monotonic clock, so setting the wall clock
// (back or forth) neither stops nor hastens the dimming and the time-out.
timeval RealNow() {
    timespec ts{};
    ::clock_gettime(CLOCK_MONOTONIC, &ts);
    return timeval{ts.tv_sec, static_cast<suseconds_t>(ts.tv_nsec / 1000)};
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

// A key curses can hand over without waiting, or nullopt. Besides what the
// terminal has sent, curses may hold keys of its own: while it decides whether
// an Esc starts a sequence it reads on, and gives back what followed when none
// did. Those keys are no longer on the descriptor, so poll() never sees them.
std::optional<int> ReadWaitingKey() {
    // Whole characters, not bytes: a UTF-8 sequence arrives as one key.
    wtimeout(stdscr, 0);
    wint_t ch = 0;
    const int kind = wget_wch(stdscr, &ch);
    wtimeout(stdscr, -1);
    if (kind == KEY_CODE_YES) return static_cast<int>(ch);
    if (kind == OK) return CharKey(static_cast<char32_t>(ch));
    return std::nullopt;
}

}  // namespace

void StartSignalHandling() {
    if (::pipe2(g_pipe, O_CLOEXEC) != 0) {
        Platform::LogSystemError("pipe() failed");
        std::exit(1);
    }
    ::fcntl(g_pipe[1], F_SETFL, O_NONBLOCK);
    sigemptyset(&g_signals);
    // The job-control signals are taken too and dropped by the signal thread:
    // the console is its terminal's only job, so Ctrl-Z changes nothing, and no
    // handler (curses installs one for SIGTSTP) ever runs.
    for (int s :
         {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH, SIGTSTP, SIGTTIN, SIGTTOU})
        sigaddset(&g_signals, s);
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

void EndStuckQuits() {
    g_endStuckQuits = true;
}

void SetWatchedDescriptor(int fd) {
    g_watchedFd = fd;
}

int WaitForInput(const timeval* limit) {
    // Whatever was drawn is on the terminal before the wait.
    doupdate();
    if (auto key = ReadWaitingKey()) return *key;
    pollfd fds[3] = {{g_inputFd, POLLIN, 0}, {g_pipe[0], POLLIN, 0}, {g_watchedFd, POLLIN, 0}};
    int timeoutMs = -1;
    if (limit) timeoutMs = static_cast<int>(limit->tv_usec / 1000 + limit->tv_sec * 1000);
    int n = ::poll(fds, g_watchedFd >= 0 ? 3 : 2, timeoutMs);
    if (n < 0) {
        // A signal that interrupts the wait is no failure: the caller waits again.
        if (errno != EINTR) Platform::LogSystemError("poll() failed");
        return EventNone;
    }
    if (n == 0) return EventTimeout;
    if (fds[0].revents & (POLLIN | POLLHUP | POLLERR | POLLNVAL)) {
        if (auto key = ReadWaitingKey()) return *key;
        // The terminal hung up without a SIGHUP reaching this process (the
        // kernel tells the session's leader, which may be the program that
        // started the console): every poll would say so again, and a quit
        // byte behind it would never be read. End as on SIGHUP.
        if (fds[0].revents & (POLLHUP | POLLERR | POLLNVAL)) return EventQuit;
        if (!(fds[1].revents & POLLIN)) return EventNone;
    }
    if (!(fds[1].revents & POLLIN) && g_watchedFd >= 0 && (fds[2].revents & POLLIN))
        return EventWatch;
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

void SetKeySession(KeySession* session) {
    g_session = session;
}

KeyReaderHooks& Hooks() {
    static KeyReaderHooks hooks{&RealNow, &WaitForInput};
    return hooks;
}

void ResetHooks() {
    Hooks() = KeyReaderHooks{&RealNow, &WaitForInput};
}

int ReadKey(Window* w, bool allowIdleTimeout) {
    bool dimmed = false;
    return ReadKeyPolling(w, allowIdleTimeout, 0, Hooks().now(), dimmed);
}

int ReadKeyPolling(Window* w, bool allowIdleTimeout, int pollMs, const timeval& start,
                   bool& dimmed) {
    const int timeout = g_session ? g_session->idleTimeout() : 0;
    const bool idleActive = allowIdleTimeout && timeout != 0;
    std::optional<timeval> pollAt;
    if (pollMs > 0) {
        const timeval now = Hooks().now();
        const long usec = now.tv_usec + (pollMs % 1000) * 1000L;
        pollAt = timeval{now.tv_sec + pollMs / 1000 + usec / 1000000,
                         static_cast<suseconds_t>(usec % 1000000)};
    }
    const timeval dimAt{start.tv_sec + kDimDelaySeconds, start.tv_usec};
    const long idle = timeout < 60 ? 60 : timeout;
    const timeval expiry{start.tv_sec + idle, start.tv_usec};

    for (;;) {
        const timeval now = Hooks().now();
        if (idleActive && Later(now, expiry)) {
            SetCurrentWindow(nullptr);
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
        if (pollAt) {
            if (!Later(*pollAt, now)) return EventTimeout;
            if (!limit || Later(*limit, Remaining(*pollAt, now))) limit = Remaining(*pollAt, now);
        }
        ShowTerminalCursor();
        int result = Hooks().wait(limit ? &*limit : nullptr);
        switch (result) {
            case EventTimeout:
                continue;
            case EventSmartCard:
                if (Window* current = CurrentWindow()) current->notify();
                if (g_session) g_session->cardChanged();
                continue;
            case EventRestart:
                if (!g_session || !g_session->holdRestart()) throw ExitRequest{0};
                continue;
            case EventResize:
            case KEY_RESIZE:
                ResizeTerminal();
                throw ExitRequest{0};
            case EventQuit:
                throw ExitRequest{0};
            case EventWatch:
                return EventWatch;
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
            dimmed = false;
        }
        return result;
    }
}

void SetInputDescriptorForTesting(int fd) {
    g_inputFd = fd;
}
int WakeupPipeWriteEndForTesting() {
    return g_pipe[1];
}

}  // namespace Tesk
