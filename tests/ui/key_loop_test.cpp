// The one key loop: the order in which handlers are asked, what each answer
// makes the loop do, and the idle timeout it passes to the key reader.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "screen.h"
#include "ui/key_loop.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/window.h"

namespace {

using namespace Tesk;
using TeskTest::FakeInput;

class KeyLoopTest : public TeskTest::ScreenTest {};

// A handler that takes only its own key and records every key it is asked.
KeyHandler Taking(int own, KeyResult answer, std::vector<std::string>& log, std::string name) {
    return [=, &log](int key) {
        log.push_back(name + ":" + static_cast<char>(key));
        return key == own ? answer : KeyResult::Ignored();
    };
}

TEST_F(KeyLoopTest, FocusedItemThenWindowThenDefaultsAndTheFirstTakerWins) {
    std::vector<std::string> log;
    const KeyLoop loop{.focused = Taking('a', KeyResult::Redraw(), log, "item"),
                       .handler = Taking('b', KeyResult::Leave(3), log, "window"),
                       .defaults = Taking('c', KeyResult::Handled(), log, "defaults")};
    EXPECT_EQ(DispatchKey(loop, 'a'), KeyResult::Redraw());
    EXPECT_EQ(DispatchKey(loop, 'b'), KeyResult::Leave(3));
    EXPECT_EQ(DispatchKey(loop, 'c'), KeyResult::Handled());
    EXPECT_EQ(DispatchKey(loop, 'z'), KeyResult::Ignored());
    EXPECT_EQ(log, (std::vector<std::string>{"item:a", "item:b", "window:b", "item:c", "window:c",
                                             "defaults:c", "item:z", "window:z", "defaults:z"}));

    // Missing steps are skipped.
    log.clear();
    const KeyLoop windowOnly{.handler = Taking('b', KeyResult::Handled(), log, "window")};
    EXPECT_TRUE(DispatchKey(windowOnly, 'b'));
    EXPECT_FALSE(DispatchKey(windowOnly, 'x'));
    EXPECT_EQ(log.size(), 2u);
}

TEST_F(KeyLoopTest, LeaveEndsTheLoopAndOnlyRedrawRunsTheHook) {
    FakeInput input({'h', 'r', 'i', EventTimeout, 'r', 'q', 'x'});
    Window w(0, 0, 20, 5, ColourBlack, ColourWhite);
    int hooks = 0;
    const KeyHandler handler = [](int key) {
        return key == 'h'   ? KeyResult::Handled()
               : key == 'r' ? KeyResult::Redraw()
               : key == 'q' ? KeyResult::Leave(7)
                            : KeyResult::Ignored();
    };
    const int result = RunKeyLoop(w, {.handler = handler, .afterKey = [&] { ++hooks; }});
    EXPECT_EQ(result, 7);
    EXPECT_EQ(hooks, 2);
    EXPECT_EQ(input.left(), 1u);
}

// A clock that moves only while the loop waits: a key arrives at once, an
// empty wait lasts its whole limit (or a minute when it has none).
class PollingInput {
public:
    explicit PollingInput(std::deque<int> keys) : keys_(std::move(keys)) {
        Hooks().now = [this] { return timeval{usec_ / 1000000, usec_ % 1000000}; };
        Hooks().wait = [this](const timeval* limit) {
            if (!keys_.empty()) {
                int key = keys_.front();
                keys_.pop_front();
                return key;
            }
            // Time passes in every wait, as on a real clock.
            usec_ += std::max(1L, limit ? limit->tv_sec * 1000000L + limit->tv_usec : 60000000L);
            return static_cast<int>(EventTimeout);
        };
    }
    ~PollingInput() { ResetHooks(); }
    long elapsedMs() const { return (usec_ - kStart) / 1000; }

private:
    static constexpr long kStart = 1000000L * 1000000L;
    std::deque<int> keys_;
    long usec_ = kStart;
};

TEST_F(KeyLoopTest, PollingAsksBetweenKeysAndIdleTimeCountsFromTheLastKey) {
    Window w(0, 0, 20, 5, ColourBlack, ColourWhite);
    std::vector<int> keys;
    int polls = 0;
    auto loop = [&](int leaveAfter) {
        return KeyLoop{.handler =
                           [&](int key) {
                               keys.push_back(key);
                               return KeyResult::Handled();
                           },
                       .pollMs = 10,
                       .onPoll =
                           [&polls, leaveAfter] {
                               return ++polls == leaveAfter ? KeyResult::Leave(9)
                                                            : KeyResult::Handled();
                           }};
    };
    {
        PollingInput input({'a'});
        EXPECT_EQ(RunKeyLoop(w, loop(3)), 9);
        EXPECT_EQ(keys, std::vector<int>{'a'});
        EXPECT_EQ(input.elapsedMs(), 30);  // one poll every 10 ms
    }
    {
        // Polls never end the idle time: a minute after the last key the
        // logged-in user is logged out, as without polling.
        keySession_.timeout = 60;
        polls = 0;
        PollingInput input({});
        EXPECT_THROW(RunKeyLoop(w, loop(-1)), TeskTimeout);
        EXPECT_GE(input.elapsedMs(), 60000);
        EXPECT_LE(input.elapsedMs(), 60020);
        EXPECT_GT(polls, 5000);
    }
}

}  // namespace
