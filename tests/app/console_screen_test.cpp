// The console as a process: the palette reset after a normal end (how it ends
// on each signal: job_control_test.cpp), and tesk-sim's run of a program on a
// fresh root.
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/harness/console_session.h"
#include "tests/harness/keys.h"

using TeskTest::ConsoleSession;
using TeskTest::ExitStatus;
using TeskTest::SessionOptions;
using TeskTest::SimRoot;

namespace {

TEST(ConsoleProcess, NormalEndResetsThePaletteAfterCurses) {
    SimRoot root;
    for (const char* how : {"return", "hostctl"}) {
        SessionOptions options;
        options.program = CONSOLE_ABORT_PROBE;
        options.args = {how};
        ConsoleSession console(root, options);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0)) << how;
        const std::string& out = console.output();
        ASSERT_GE(out.size(), 3u) << how;
        EXPECT_EQ(out.substr(out.size() - 3), "\033]R") << how;
        EXPECT_NE(out.find("probe window"), std::string::npos) << how;
    }
    EXPECT_NE(
        root.readFile("/var/log/syslog.log").find("TESK aborted by exception: host went away"),
        std::string::npos);
}

TEST(SimulatedHostCommands, RunStartsTheGalleryOnAFreshRootAndRemovesIt) {
    SessionOptions options;
    options.program = TESK_SIM_BINARY;
    options.args = {"gallery"};
    options.env = {{"ESCDELAY", "50"}};
    ConsoleSession sim(options);
    ASSERT_TRUE(sim.waitForText("TESK widget gallery"));
    const std::string out = sim.output();
    const auto at = out.find("Simulated host root: ");
    ASSERT_NE(at, std::string::npos);
    const std::string root = out.substr(at + 21, out.find_first_of("\r\n", at) - at - 21);
    EXPECT_TRUE(std::filesystem::exists(root + "/var/lib/simhost/state.json")) << root;
    sim.waitForQuiet();
    sim.key(TeskTest::Key::Esc);
    EXPECT_EQ(sim.waitExit(), ExitStatus::Exited(0));
    EXPECT_FALSE(std::filesystem::exists(root)) << root;

    // A program ended by a signal ends the run with 128 plus the signal.
    ConsoleSession killed(options);
    ASSERT_TRUE(killed.waitForText("TESK widget gallery"));
    const std::string pid = std::to_string(killed.pid());
    std::ifstream children("/proc/" + pid + "/task/" + pid + "/children");
    pid_t program = 0;
    ASSERT_TRUE(children >> program);
    ::kill(program, SIGKILL);
    EXPECT_EQ(killed.waitExit(), ExitStatus::Exited(128 + SIGKILL));
}

}  // namespace
