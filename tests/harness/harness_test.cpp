// The harness's own tests: the terminal emulation fed with known bytes, the
// host root, and pseudo-terminal sessions of small shell programs (the
// console's own start and end: tests/app/console_screen_test.cpp).
#include <signal.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <string>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "tests/harness/console_session.h"

namespace TeskTest {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// A shell program in a terminal of 90 x 20.
SessionOptions Shell(const std::string& script) {
    return {.program = "/bin/sh", .args = {"-c", script}, .cols = 90, .rows = 20};
}

TEST(ScreenTest, PositionsCountCellsAndSplitSequencesAreJoined) {
    Screen screen(20, 4);
    // A wide character takes two cells, "é" two bytes; an escape sequence and
    // a character split across writes are joined.
    screen.feed(
        "ab\xe6\xbc\xa2"
        "c\x1b[2;3Hcaf\xc3");
    screen.feed("\xa9 \x1b[3");
    screen.feed("1mok\x1b[4;20Hz\x1b[?25l");

    EXPECT_EQ(screen.text(),
              "ab\xe6\xbc\xa2"
              "c\n  caf\xc3\xa9 ok\n\n                   z");
    EXPECT_EQ(screen.find("c"), (Position{4, 0}));
    EXPECT_EQ(screen.find("ok"), (Position{7, 1}));
    EXPECT_TRUE(screen.contains("c\n  caf"));
    EXPECT_FALSE(screen.contains("c\ncaf"));
    EXPECT_EQ(screen.cell(7, 1).fg, Colour::Indexed(1));
    EXPECT_EQ(screen.cell(2, 0).text, "\xe6\xbc\xa2");
    EXPECT_EQ(screen.cell(3, 0).text, "") << "the right half of a wide character";
    EXPECT_EQ(screen.cell(-1, 0).text, " ");
    EXPECT_FALSE(screen.cursorVisible());
}

TEST(ScreenTest, ColoursAndAttributesOfEachCell) {
    Screen screen(40, 1);
    screen.feed(
        "\x1b[31;47mR\x1b[0m\x1b[1;32mB\x1b[0m\x1b[7mV\x1b[0m\x1b[38;5;196mX\x1b[0m"
        "\x1b[38;2;10;20;30;48;2;200;100;50mC\x1b[0m\x1b[4mU\x1b[0mp");
    EXPECT_EQ(screen.cell(0, 0).fg, Colour::Indexed(1));
    EXPECT_EQ(screen.cell(0, 0).bg, Colour::Indexed(7));
    EXPECT_TRUE(screen.cell(1, 0).bold && !screen.cell(0, 0).bold);
    EXPECT_TRUE(screen.cell(2, 0).standout());
    EXPECT_EQ(screen.cell(3, 0).fg, Colour::Indexed(196));
    EXPECT_EQ(screen.cell(4, 0).fg, Colour::Rgb(10, 20, 30));
    EXPECT_EQ(screen.cell(4, 0).bg, Colour::Rgb(200, 100, 50));
    EXPECT_TRUE(screen.cell(5, 0).underline);
    EXPECT_TRUE(screen.cell(6, 0).fg.isDefault() && screen.cell(6, 0).bg.isDefault());
}

// Every screen test leans on the root's log checks: a line that is not there
// must fail them, and the root must go with the test.
TEST(SimRootTest, LogChecksFailOnAMissingLineAndTheRootIsRemoved) {
    std::string kept;
    {
        SimRoot root;
        kept = root.path();
        root.writeFile("/var/log/hamon.log", "first line\nsecond: Resized window\n");
        EXPECT_EQ(root.logLinesWith("Resized", "/var/log/hamon.log"),
                  std::vector<std::string>{"second: Resized window"});
        auto missing = root.hasLogLine("absent", "/var/log/hamon.log");
        EXPECT_NE(std::string(missing.message()).find("second: Resized window"), std::string::npos);
        EXPECT_NONFATAL_FAILURE(root.waitForLogLine("absent", 30ms, "/var/log/hamon.log"),
                                "absent");
    }
    EXPECT_FALSE(fs::exists(kept));
}

// The size is set before the program starts, a resize reaches it as SIGWINCH
// (the trap runs once the running sleep is over) and a signal ends it.
TEST(ProbeSessionTest, SizeResizeAndSignalReachTheProgram) {
    ConsoleSession probe(
        Shell("trap 'stty size' WINCH; stty size; echo ready; while :; do sleep 0.1; done"));
    ASSERT_TRUE(probe.waitForText("ready"));
    EXPECT_EQ(probe.row(0), "20 90");
    probe.resize(100, 30);
    EXPECT_TRUE(probe.waitForText("30 100"));
    EXPECT_EQ(probe.status(), ExitStatus::Running());
    probe.signal(SIGTERM);
    EXPECT_EQ(probe.waitExit(), ExitStatus::Signalled(SIGTERM));
}

TEST(ProbeSessionTest, FailedWaitsReportTheScreenAtOnce) {
    ConsoleSession probe(Shell("echo ready; read line; printf last; exit 3"));
    ASSERT_TRUE(probe.waitForText("ready"));
    // The dump shows what was on the screen instead.
    EXPECT_NONFATAL_FAILURE(probe.waitForText("absent", 50ms), " 0 |ready");
    EXPECT_NONFATAL_FAILURE(probe.waitExit(50ms), "waiting for the program to end");

    probe.type("q" + std::string(Key::Enter));
    EXPECT_EQ(probe.waitExit(), ExitStatus::Exited(3));
    EXPECT_TRUE(probe.screen().contains("last")) << "output written just before the end is kept";
    // Once the program has ended, waiting for text fails without waiting out the time.
    auto start = std::chrono::steady_clock::now();
    EXPECT_NONFATAL_FAILURE(probe.waitForText("absent", 60s),
                            "exited with status 3 without showing");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_NONFATAL_FAILURE(probe.type("x"), "cannot type");
    EXPECT_THROW(ConsoleSession{SessionOptions{.program = "/no/such/program"}}, std::runtime_error);
}

}  // namespace
}  // namespace TeskTest
