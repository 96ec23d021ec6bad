// Found terminal settings, flow control, fatal-signal handlers.
#include "ui/terminal_restore.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cstddef>

namespace Tesk {
namespace {

termios g_found{};
volatile sig_atomic_t g_saved = 0;

constexpr int kFatalSignals[] = {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL};
struct sigaction g_previous[NSIG];

// Enough for the handler below; a sanitizer's handler brings its own stack.
constexpr std::size_t kAlternateStackSize = 64 * 1024;
alignas(16) char g_alternateStack[kAlternateStackSize];

void OnFatalSignal(int sig, siginfo_t* info, void*) {
    RestoreFoundTerminal();
    ::sigaction(sig, &g_previous[sig], nullptr);
    // A signal that was sent (abort(), kill) is sent again, now to the
    // previous handler; a fault repeats when the handler returns and reaches
    // the previous handler with its own details.
    if (info == nullptr || info->si_code <= 0) ::raise(sig);
}

}  // namespace

bool SaveFoundTerminal() {
    if (::tcgetattr(1, &g_found) != 0) return false;
    g_saved = 1;
    return true;
}

void RestoreFoundTerminal() {
    if (g_saved) ::tcsetattr(1, TCSANOW, &g_found);
}

void TurnOffFlowControl() {
    termios settings{};
    if (::tcgetattr(1, &settings) != 0) return;
    settings.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF);
    ::tcsetattr(1, TCSANOW, &settings);
}

void RestoreTerminalOnFatalSignals() {
    // Keep an alternate stack already there (a sanitizer's runtime sets one).
    stack_t current{};
    if (::sigaltstack(nullptr, &current) == 0 && (current.ss_flags & SS_DISABLE)) {
        stack_t stack{};
        stack.ss_sp = g_alternateStack;
        stack.ss_size = sizeof g_alternateStack;
        ::sigaltstack(&stack, nullptr);
    }
    struct sigaction action {};
    action.sa_sigaction = &OnFatalSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (int sig : kFatalSignals) ::sigaction(sig, &action, &g_previous[sig]);
}

}  // namespace Tesk
