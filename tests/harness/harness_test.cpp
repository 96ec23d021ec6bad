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
#include "tests/harness/keys.h"
#include "tests/harness/screen.h"
#include "tests/harness/sim_root.h"

namespace TeskTest {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

SessionOptions Probe(int cols = 80, int rows = 25) {
    SessionOptions o;
    o.program = SCREEN_PROBE_BINARY;
    o.cols = cols;
    o.rows = rows;
    return o;
}

TEST(ScreenTest, TextPositionsFollowCellsNotBytes) {
    Screen screen(20, 4);
    // Wide characters take two cells, "é" two bytes: columns must still match cells.
    screen.feed(
        "ab\xe6\xbc\xa2"
        "c\x1b[2;3Hcaf\xc3\xa9 ok   \x1b[4;20Hz");

    EXPECT_EQ(screen.row(0),
              "ab\xe6\xbc\xa2"
              "c");
    EXPECT_EQ(screen.row(1), "  caf\xc3\xa9 ok");
    EXPECT_EQ(screen.text(),
              "ab\xe6\xbc\xa2"
              "c\n  caf\xc3\xa9 ok\n\n                   z");

    EXPECT_EQ(screen.find("c"), (Position{4, 0}));
    EXPECT_EQ(screen.find("ok"), (Position{7, 1}));
    EXPECT_EQ(screen.find("z"), (Position{19, 3}));
    EXPECT_FALSE(screen.find("cok").has_value());
    EXPECT_TRUE(screen.contains("c\n  caf"));
    EXPECT_FALSE(screen.contains("c\ncaf"));

    EXPECT_EQ(screen.cell(2, 0).text, "\xe6\xbc\xa2");
    EXPECT_EQ(screen.cell(2, 0).width, 2);
    EXPECT_EQ(screen.cell(3, 0).text, "");
    EXPECT_EQ(screen.cell(10, 0).text, " ");
    EXPECT_EQ(screen.cell(-1, 0).text, " ");
    EXPECT_EQ(screen.cell(0, 4).text, " ");

    // The cursor stays in the last column after writing there.
    EXPECT_EQ(screen.cursor().row, 3);
    screen.feed("\x1b[?25l");
    EXPECT_FALSE(screen.cursorVisible());

    screen.resize(30, 6);
    EXPECT_EQ(screen.cols(), 30);
    EXPECT_EQ(screen.rows(), 6);
    EXPECT_EQ(screen.row(0),
              "ab\xe6\xbc\xa2"
              "c");
}

TEST(ScreenTest, SequencesSplitAcrossWritesAreJoined) {
    Screen screen(10, 2);
    screen.feed("\x1b[3");
    screen.feed("1mR\xe6");
    screen.feed("\xbc\xa2");
    EXPECT_EQ(screen.row(0), "R\xe6\xbc\xa2");
    EXPECT_EQ(screen.cell(0, 0).fg, Colour::Indexed(1));
    EXPECT_EQ(screen.cell(1, 0).fg, Colour::Indexed(1));
}

TEST(SimRootTest, MakesReadsEditsAndRemovesARoot) {
    std::string kept;
    {
        SimRoot root;
        kept = root.path();
        ASSERT_TRUE(fs::is_directory(kept));
        EXPECT_EQ(root.path("/var/log/syslog.log"), kept + "/var/log/syslog.log");
        EXPECT_EQ(root.path("var/log/syslog.log"), kept + "/var/log/syslog.log");
        EXPECT_TRUE(root.exists("/var/lib/simhost/state.json"));

        root.editState([](Json& s) { s["users"][0]["password"] = "changed"; });
        EXPECT_EQ(root.stateValue("/users/0/password"), Json("changed"));
        EXPECT_EQ(root.stateValue("/users/0/name"), Json("root"));
        EXPECT_FALSE(root.stateValue("/no/such/value").has_value());

        root.setFault("rux-cmd", {{"exitStatus", 2}});
        EXPECT_EQ(root.state()["faults"]["rux-cmd"]["exitStatus"], 2);
        root.setFault("rux-cmd", nullptr);
        EXPECT_FALSE(root.state()["faults"].contains("rux-cmd"));

        root.writeFile("/var/log/hamon.log", "first line\nsecond: Resized window\n");
        EXPECT_EQ(root.readFile("var/log/hamon.log"), "first line\nsecond: Resized window\n");
        EXPECT_EQ(root.logLines("/var/log/hamon.log").size(), 2u);
        EXPECT_EQ(root.logLinesWith("Resized", "/var/log/hamon.log"),
                  std::vector<std::string>{"second: Resized window"});
        EXPECT_TRUE(root.hasLogLine("first", "/var/log/hamon.log"));
        auto missing = root.hasLogLine("absent", "/var/log/hamon.log");
        EXPECT_FALSE(missing);
        EXPECT_NE(std::string(missing.message()).find("second: Resized window"), std::string::npos);

        EXPECT_NONFATAL_FAILURE(root.readFile("/no/such/file"), "/no/such/file");
        EXPECT_NONFATAL_FAILURE(root.waitForLogLine("absent", 30ms, "/var/log/hamon.log"),
                                "absent");
    }
    EXPECT_FALSE(fs::exists(kept));

    ::setenv("TESK_KEEP_ROOTS", "1", 1);
    { kept = SimRoot().path(); }
    ::unsetenv("TESK_KEEP_ROOTS");
    EXPECT_TRUE(fs::is_directory(kept));
    fs::remove_all(kept);
}

TEST(SimRootTest, UnknownProfileFailsWithTheToolsMessage) {
    try {
        SimRoot root("no-such-profile");
        ADD_FAILURE() << "a root was made from an unknown profile";
    } catch (const std::runtime_error& e) {
        EXPECT_NE(std::string(e.what()).find("unknown profile"), std::string::npos) << e.what();
    }
}

TEST(ProbeSessionTest, ReadsColoursAttributesAndWindowSize) {
    ConsoleSession probe(Probe(90, 20));
    ASSERT_TRUE(probe.waitForText("ready"));
    // The size was set before the program started.
    EXPECT_EQ(probe.row(0), "size 90x20");
    EXPECT_FALSE(probe.screen().cursorVisible());

    auto at = [&](const char* text) {
        auto pos = probe.find(text);
        EXPECT_TRUE(pos.has_value()) << text;
        return probe.cell(pos ? pos->col : 0, pos ? pos->row : 0);
    };
    Cell red = at("RED");
    EXPECT_EQ(red.fg, Colour::Indexed(1));
    EXPECT_EQ(red.bg, Colour::Indexed(7));
    EXPECT_FALSE(red.bold);

    Cell bold = at("BOLD");
    EXPECT_TRUE(bold.bold);
    EXPECT_EQ(bold.fg, Colour::Indexed(2));
    EXPECT_TRUE(bold.bg.isDefault());

    Cell rev = at("REV");
    EXPECT_TRUE(rev.reverse);
    EXPECT_TRUE(rev.standout());
    EXPECT_TRUE(rev.fg.isDefault());

    EXPECT_EQ(at("X196").fg, Colour::Indexed(196));
    Cell rgb = at("RGB");
    EXPECT_EQ(rgb.fg, Colour::Rgb(10, 20, 30));
    EXPECT_EQ(rgb.bg, Colour::Rgb(200, 100, 50));
    EXPECT_TRUE(at("UND").underline);

    Cell plain = at("plain");
    EXPECT_TRUE(plain.fg.isDefault());
    EXPECT_TRUE(plain.bg.isDefault());
    EXPECT_FALSE(plain.bold || plain.reverse || plain.underline);
    // A cell written after a reset loses the colours before it.
    EXPECT_TRUE(probe.cell(3, 1).bg.isDefault());

    EXPECT_EQ(probe.find("caf"), (Position{10, 2}));
}

TEST(ProbeSessionTest, KeysArriveAsTheConsoleReadsThem) {
    ConsoleSession probe(Probe());
    ASSERT_TRUE(probe.waitForText("ready"));
    const std::pair<std::string, const char*> cases[] = {
        {Key::F(1), "1b 5b 31 31 7e"},
        {Key::F(5), "1b 5b 31 35 7e"},
        {Key::F(6), "1b 5b 31 37 7e"},
        {Key::F(12), "1b 5b 32 34 7e"},
        {std::string(Key::Up), "1b 5b 41"},
        {std::string(Key::Delete), "1b 5b 33 7e"},
        {std::string(Key::Enter), "0d"},
        {std::string(Key::Backspace), "7f"},
        {Key::Ctrl('c'), "03"},
    };
    for (const auto& [bytes, hex] : cases) {
        probe.type(bytes);
        EXPECT_TRUE(
            probe.waitFor([&] { return probe.row(3) == std::string("keys: ") + hex; }, hex));
    }
    EXPECT_THROW(Key::F(13), std::out_of_range);

    probe.type("q");
    EXPECT_EQ(probe.waitExit(), ExitStatus::Exited(3));
    // Output written just before the end is not lost.
    EXPECT_EQ(probe.row(3), "keys: 71");
}

TEST(ProbeSessionTest, ResizeReachesTheProgramAndSignalsEndIt) {
    ConsoleSession probe(Probe());
    ASSERT_TRUE(probe.waitForText("ready"));
    probe.resize(100, 30);
    EXPECT_TRUE(probe.waitForText("size 100x30"));
    EXPECT_EQ(probe.screen().cols(), 100);
    EXPECT_EQ(probe.screen().rows(), 30);

    EXPECT_EQ(probe.status(), ExitStatus::Running());
    probe.signal(SIGTERM);
    EXPECT_EQ(probe.waitExit(), ExitStatus::Signalled(SIGTERM));
}

TEST(ProbeSessionTest, FailedWaitsReportTheScreenAtOnce) {
    ConsoleSession probe(Probe());
    ASSERT_TRUE(probe.waitForText("ready"));
    // The dump shows what was on the screen instead.
    EXPECT_NONFATAL_FAILURE(probe.waitForText("absent", 50ms), " 5 |ready");
    EXPECT_NONFATAL_FAILURE(probe.waitFor([] { return false; }, "the impossible", 50ms),
                            "the impossible");
    EXPECT_NONFATAL_FAILURE(probe.waitExit(50ms), "did not end within 50 ms");

    probe.type("q");
    EXPECT_EQ(probe.waitExit(), ExitStatus::Exited(3));
    // Once the program has ended, waiting for text fails without waiting out the time.
    auto start = std::chrono::steady_clock::now();
    EXPECT_NONFATAL_FAILURE(probe.waitForText("absent", 60s),
                            "exited with status 3 without showing");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_NONFATAL_FAILURE(probe.type("x"), "cannot type");

    SessionOptions missing;
    missing.program = "/no/such/program";
    EXPECT_THROW(ConsoleSession{missing}, std::runtime_error);
}

}  // namespace
}  // namespace TeskTest
