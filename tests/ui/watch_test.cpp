// A key loop's watched descriptor: a readable one reaches onWatch while the
// loop waits, and is no longer watched once the loop has ended.
#include <gtest/gtest.h>
#include <unistd.h>

#include "screen.h"
#include "ui/key_loop.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/window.h"

namespace {

using namespace Tesk;

class WatchTest : public TeskTest::ScreenTest {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        ASSERT_EQ(::pipe(input_), 0);
        ASSERT_EQ(::pipe(watch_), 0);
        SetInputDescriptorForTesting(input_[0]);  // no key comes
    }
    void TearDown() override {
        SetInputDescriptorForTesting(0);
        for (int fd : {input_[0], input_[1], watch_[0], watch_[1]}) ::close(fd);
        ScreenTest::TearDown();
    }
    int input_[2] = {-1, -1};
    int watch_[2] = {-1, -1};
};

TEST_F(WatchTest, AChangeReachesTheLoopAndOnlyWhileItWaits) {
    Window w(0, 0, 20, 5, ColourBlack, ColourWhite);
    ASSERT_EQ(::write(watch_[1], "x", 1), 1);
    int calls = 0;
    EXPECT_EQ(RunKeyLoop(w, {.watchFd = watch_[0],
                             .onWatch =
                                 [&] {
                                     ++calls;
                                     return KeyResult::Leave(5);
                                 }}),
              5);
    EXPECT_EQ(calls, 1);

    // Still readable, but nobody watches it now: a wait runs to its limit.
    bool dimmed = false;
    EXPECT_EQ(ReadKeyPolling(&w, false, 20, Hooks().now(), dimmed), EventTimeout);
}

}  // namespace
