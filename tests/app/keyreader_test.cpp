// The key reader: dimming, the idle timeout and events from the wake-up pipe
// (the smart-card check: the card login's screen test). Time is driven through
// the reader's hooks, so minutes pass without waiting for them.
#include <sys/time.h>

#include <deque>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/app/fixtures.h"
#include "tests/ui/screen.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/window.h"

namespace {

// Remembers every focus change.
class RecordingWindow : public Tesk::Window {
public:
    RecordingWindow() : Window(0, 0, 20, 5, Tesk::ColourBlack, Tesk::ColourWhite) {}
    void setActive(bool active) override {
        changes.push_back(active);
        Window::setActive(active);
    }
    std::vector<bool> changes;
};

// What the fake wait does next: let the whole limit pass (a time-out), or
// deliver a result after some seconds.
struct Step {
    int result;
    long afterSeconds;  // -1: the whole limit
};

class KeyReader : public CursesOnPipes {
protected:
    void SetUp() override {
        Start("linux");
        now_ = {1000000, 250000};
        Tesk::Hooks().now = [this] { return now_; };
        Tesk::Hooks().wait = [this](const timeval* limit) { return Wait(limit); };
        Tesk::SetKeySession(&session_);
    }
    void TearDown() override {
        Tesk::ResetHooks();
        Tesk::SetKeySession(nullptr);
        Tesk::SetCurrentWindow(nullptr);
        CursesOnPipes::TearDown();
    }
    int Wait(const timeval* limit) {
        limits_.push_back(limit ? limit->tv_sec : -1);
        if (steps_.empty()) {
            ADD_FAILURE() << "the reader waited more often than the test planned";
            throw std::runtime_error("no more steps");
        }
        Step s = steps_.front();
        steps_.pop_front();
        if (s.afterSeconds < 0) {
            if (!limit) {
                ADD_FAILURE() << "a time-out was planned but the reader waits without limit";
                throw std::runtime_error("unlimited wait");
            }
            // poll returns a little after its limit.
            now_.tv_sec += limit->tv_sec;
            now_.tv_usec += limit->tv_usec + 1000;
        } else {
            now_.tv_sec += s.afterSeconds;
        }
        if (now_.tv_usec >= 1000000) now_.tv_sec += 1, now_.tv_usec -= 1000000;
        return s.result;
    }
    timeval now_{};
    std::deque<Step> steps_;
    std::vector<long> limits_;
    TeskTest::TestKeySession session_;  // its idle timeout set by each test
};

TEST_F(KeyReader, DimsAfterAMinuteAndTheWakingKeyIsNotSwallowed) {
    RecordingWindow w;
    session_.timeout = 0;  // disabled: dims, never times out
    steps_ = {{Tesk::EventTimeout, -1}, {'x', 100000}};
    EXPECT_EQ(Tesk::ReadKey(&w, true), 'x');
    EXPECT_EQ(w.changes, (std::vector<bool>{false, true}));
    // First wait until the dim deadline, then without limit.
    EXPECT_EQ(limits_, (std::vector<long>{60, -1}));
}

TEST_F(KeyReader, ShortIdleTimeoutActsAsOneMinute) {
    RecordingWindow w;
    session_.timeout = 30;
    Tesk::SetCurrentWindow(&w);
    steps_ = {{Tesk::EventTimeout, -1}};
    EXPECT_THROW(Tesk::ReadKey(&w, true), Tesk::TeskTimeout);
    // The expiry falls on the dim deadline: one minute's wait, then the exception.
    EXPECT_EQ(limits_, (std::vector<long>{60}));
    EXPECT_EQ(Tesk::CurrentWindow(), nullptr);
    // Half a minute and more without a key does not end the session yet.
    steps_ = {{Tesk::EventNone, 31}, {'k', 1}};
    EXPECT_EQ(Tesk::ReadKey(&w, true), 'k');
}

TEST_F(KeyReader, IdleTimeoutOnlyWhereTheCallerAllowsIt) {
    RecordingWindow w;
    session_.timeout = 120;
    steps_ = {{Tesk::EventTimeout, -1}, {'k', 10000}};
    EXPECT_EQ(Tesk::ReadKey(&w, false), 'k');

    steps_ = {{Tesk::EventTimeout, -1}, {Tesk::EventTimeout, -1}};
    limits_.clear();
    EXPECT_THROW(Tesk::ReadKey(&w, true), Tesk::TeskTimeout);
    EXPECT_EQ(limits_, (std::vector<long>{60, 59}));  // the dim minute, then the rest of 120 s
}

// The real wait on the real wake-up pipe, fed by the real signal thread.
class WakeupPipe : public CursesOnPipes {
protected:
    static void SetUpTestSuite() { Tesk::StartSignalHandling(); }
    void SetUp() override {
        Start("linux");
        Tesk::SetInputDescriptorForTesting(in_[0]);
    }
    void TearDown() override {
        Tesk::SetInputDescriptorForTesting(0);
        CursesOnPipes::TearDown();
    }
    void Byte(char b) { ASSERT_EQ(::write(Tesk::WakeupPipeWriteEndForTesting(), &b, 1), 1); }
};

TEST_F(WakeupPipe, TheKeyAfterALoneEscIsNotLeftWithCurses) {
    // Curses reads on after an Esc to see whether a sequence starts and keeps
    // what it read when none does: the descriptor is empty by then.
    for (const char* second : {"\r", "x", "\x1b"}) {
        const std::string bytes = std::string("\x1b") + second;
        ASSERT_EQ(::write(in_[1], bytes.data(), bytes.size()), 2);
        timeval limit{1, 0};
        EXPECT_EQ(Tesk::WaitForInput(&limit), 27) << second;
        EXPECT_EQ(Tesk::WaitForInput(&limit), *second == '\r' ? Tesk::KeyEnter : *second) << second;
    }
}

}  // namespace
