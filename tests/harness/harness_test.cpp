// The harness's own tests: the terminal emulation, the host root and the
// pseudo-terminal sessions, run against a probe program with known output
// (the console's own start and end: tests/app/console_screen_test.cpp).
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

SessionOptions Probe() {
    return {.program = SCREEN_PROBE_BINARY, .cols = 90, .rows = 20};
}

TEST(ScreenTest, PositionsCountCellsAndSplitSequencesAreJoined) {
    Screen screen(20, 4);
    // A wide character takes two cells, "é" two bytes; an escape sequence and
    // a character split across writes are joined.
    screen.feed(
        "ab\xe6\xbc\xa2"
        "c\x1b[2;3Hcaf\xc3");
    screen.feed("\xa9 \x1b[3");
    screen.feed("1mok\x1b[4;20Hz");

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
}

TEST(SimRootTest, MakesReadsEditsAndRemovesARoot) {
    std::string kept;
    {
        SimRoot root;
        kept = root.path();
        EXPECT_EQ(root.path("var/log/syslog.log"), kept + "/var/log/syslog.log");
        root.editState([](Json& s) { s["users"][0]["password"] = "changed"; });
        EXPECT_EQ(root.stateValue("/users/0/password"), Json("changed"));
        EXPECT_FALSE(root.stateValue("/no/such/value").has_value());
        root.setFault("rux-cmd", {{"exitStatus", 2}});
        root.setFault("rux-cmd", nullptr);
        EXPECT_FALSE(root.state()["faults"].contains("rux-cmd"));

        root.writeFile("/var/log/hamon.log", "first line\nsecond: Resized window\n");
        EXPECT_EQ(root.logLinesWith("Resized", "/var/log/hamon.log"),
                  std::vector<std::string>{"second: Resized window"});
        auto missing = root.hasLogLine("absent", "/var/log/hamon.log");
        EXPECT_NE(std::string(missing.message()).find("second: Resized window"), std::string::npos);
        EXPECT_NONFATAL_FAILURE(root.waitForLogLine("absent", 30ms, "/var/log/hamon.log"),
                                "absent");
    }
    EXPECT_FALSE(fs::exists(kept));

    ::setenv("TESK_KEEP_ROOTS", "1", 1);
    { kept = SimRoot().path(); }
    ::unsetenv("TESK_KEEP_ROOTS");
    EXPECT_TRUE(fs::is_directory(kept));
    fs::remove_all(kept);
    EXPECT_THROW(SimRoot("no-such-profile"), std::runtime_error);
}

TEST(ProbeSessionTest, ReadsColoursKeysAndResizesAndASignalEndsIt) {
    ConsoleSession probe(Probe());
    ASSERT_TRUE(probe.waitForText("ready"));
    EXPECT_EQ(probe.row(0), "size 90x20") << "the size was set before the program started";
    EXPECT_FALSE(probe.screen().cursorVisible());
    auto at = [&](const char* text) {
        auto pos = probe.find(text);
        EXPECT_TRUE(pos.has_value()) << text;
        return probe.cell(pos.value_or(Position{}).col, pos.value_or(Position{}).row);
    };
    EXPECT_EQ(at("RED").fg, Colour::Indexed(1));
    EXPECT_EQ(at("RED").bg, Colour::Indexed(7));
    EXPECT_TRUE(at("BOLD").bold && !at("RED").bold);
    EXPECT_TRUE(at("REV").standout());
    EXPECT_EQ(at("X196").fg, Colour::Indexed(196));
    EXPECT_EQ(at("RGB").bg, Colour::Rgb(200, 100, 50));
    EXPECT_TRUE(at("UND").underline);
    EXPECT_TRUE(at("plain").fg.isDefault() && at("plain").bg.isDefault());
    EXPECT_EQ(probe.find("caf"), (Position{10, 2}));

    const std::pair<std::string, const char*> keys[] = {
        {Key::F(1), "1b 5b 31 31 7e"},       {Key::F(6), "1b 5b 31 37 7e"},
        {Key::F(12), "1b 5b 32 34 7e"},      {std::string(Key::Up), "1b 5b 41"},
        {std::string(Key::Backspace), "7f"}, {Key::Ctrl('c'), "03"},
    };
    for (const auto& [bytes, hex] : keys) {
        probe.type(bytes);
        EXPECT_TRUE(
            probe.waitFor([&] { return probe.row(3) == std::string("keys: ") + hex; }, hex));
    }

    probe.resize(100, 30);
    EXPECT_TRUE(probe.waitForText("size 100x30"));
    EXPECT_EQ(probe.status(), ExitStatus::Running());
    probe.signal(SIGTERM);
    EXPECT_EQ(probe.waitExit(), ExitStatus::Signalled(SIGTERM));
}

TEST(ProbeSessionTest, FailedWaitsReportTheScreenAtOnce) {
    ConsoleSession probe(Probe());
    ASSERT_TRUE(probe.waitForText("ready"));
    // The dump shows what was on the screen instead.
    EXPECT_NONFATAL_FAILURE(probe.waitForText("absent", 50ms), " 5 |ready");
    EXPECT_NONFATAL_FAILURE(probe.waitExit(50ms), "waiting for the program to end");

    probe.type("q");
    EXPECT_EQ(probe.waitExit(), ExitStatus::Exited(3));
    EXPECT_EQ(probe.row(3), "keys: 71") << "output written just before the end is kept";
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
