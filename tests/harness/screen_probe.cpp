// A small terminal program for the harness's own tests: draws a card of
// coloured and styled text with raw escape sequences, shows the bytes of each
// key it reads and its window size after every SIGWINCH, and ends with
// status 3 on "q".
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace {

volatile sig_atomic_t g_resized = 0;

void OnWinch(int) {
    g_resized = 1;
}

void Put(const std::string& s) {
    size_t done = 0;
    while (done < s.size()) {
        ssize_t n = ::write(1, s.data() + done, s.size() - done);
        if (n > 0) {
            done += static_cast<size_t>(n);
        } else if (n < 0 && errno != EINTR) {
            return;
        }
    }
}

void ShowSize() {
    winsize ws{};
    ::ioctl(0, TIOCGWINSZ, &ws);
    Put("\x1b[1;1H\x1b[2Ksize " + std::to_string(ws.ws_col) + "x" + std::to_string(ws.ws_row));
}

}  // namespace

int main() {
    termios raw{};
    ::tcgetattr(0, &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(0, TCSANOW, &raw);

    sigset_t winch, waitMask;
    sigemptyset(&winch);
    sigaddset(&winch, SIGWINCH);
    ::sigprocmask(SIG_BLOCK, &winch, &waitMask);
    struct sigaction sa {};
    sa.sa_handler = &OnWinch;
    ::sigaction(SIGWINCH, &sa, nullptr);

    Put("\x1b[H\x1b[2J");
    ShowSize();
    Put("\x1b[2;1H"
        "\x1b[31;47mRED\x1b[0m "
        "\x1b[1;32mBOLD\x1b[0m "
        "\x1b[7mREV\x1b[0m "
        "\x1b[38;5;196mX196\x1b[0m "
        "\x1b[38;2;10;20;30;48;2;200;100;50mRGB\x1b[0m "
        "\x1b[4mUND\x1b[0m "
        "plain");
    Put("\x1b[3;1Hwide:\xe6\xbc\xa2\xe5\xad\x97 caf\xc3\xa9!");
    Put("\x1b[4;1Hkeys:");
    Put("\x1b[?25l\x1b[6;1Hready");

    for (;;) {
        pollfd p{0, POLLIN, 0};
        // SIGWINCH is let through only while waiting, so none is missed.
        int r = ::ppoll(&p, 1, nullptr, &waitMask);
        if (g_resized) {
            g_resized = 0;
            ShowSize();
        }
        if (r <= 0) continue;
        char buf[64];
        ssize_t n = ::read(0, buf, sizeof buf);
        if (n <= 0) return 1;
        std::string line = "\x1b[4;1H\x1b[2Kkeys:";
        for (ssize_t i = 0; i < n; ++i) {
            char hex[4];
            std::snprintf(hex, sizeof hex, " %02x", static_cast<unsigned char>(buf[i]));
            line += hex;
        }
        Put(line);
        if (n == 1 && buf[0] == 'q') return 3;
    }
}
