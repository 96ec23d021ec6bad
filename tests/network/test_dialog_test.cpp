// The management network test from the customization menu: what it pings and
// resolves, how each outcome shows, and that a hung step holds up neither the
// screen nor the console's end.
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include "tests/session/session_support.h"

namespace {

using namespace SessionTest;
using TeskTest::ExitStatus;
using TeskTest::Json;
using TeskTest::Scaled;

// From the menu: the test's set-up dialog.
bool OpenTest(ConsoleSession& console) {
    return OpenSelected(console, "Test Management Network", "Resolve Hostname");
}

// Clears the selected field (a fresh field is emptied by the first
// Backspace, a field being edited loses a character to each).
void ClearField(ConsoleSession& console) {
    console.key(Key::End);
    for (int i = 0; i < 40; ++i) console.key(Key::Backspace);
}

struct Menu {
    SimRoot root;
    ConsoleSession console;
    explicit Menu(const std::string& profile = "default")
        : root(profile), console(root, LocalConsole()) {}
    bool ready() { return LogIn(console); }
};

TEST(TestNetwork, DefaultHostTestsGreenAndEmptyFieldsAreSkippedBadOnesNamed) {
    Menu m;
    ASSERT_TRUE(m.ready());
    ASSERT_TRUE(OpenTest(m.console));
    EXPECT_FALSE(m.console.find("Resolve Hostname:"));  // the only label without a colon
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForText("Done."));
    EXPECT_TRUE(m.console.find("Testing Management Network"));
    EXPECT_TRUE(m.console.find("You may interrupt the test at any time."));
    for (const char* line :
         {"Pinging address #1 (192.168.10.1).", "Pinging address #2 (192.168.10.2).",
          "Pinging address #3 (192.168.10.3).", "Resolving hostname tesk-host01"}) {
        const std::string row = DialogRow(m.console, line);
        EXPECT_TRUE(row.starts_with(line) && row.ends_with("OK.")) << row << "\n"
                                                                   << m.console.dump();
    }
    EXPECT_FALSE(m.console.find("Failed."));
    EXPECT_TRUE(m.console.waitForText("<Enter> OK"));
    EXPECT_TRUE(m.root.hasLogLine("Command \"zrkping -c 3 192.168.10.1\" succeeded"));
    // Only <Enter> closes the result.
    m.console.key(Key::Esc);
    std::this_thread::sleep_for(Scaled(std::chrono::milliseconds(500)));
    EXPECT_TRUE(m.console.find("Done."));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForTextGone("Testing Management Network"));
    ASSERT_TRUE(WaitSettled(m.console, "<Enter> Run Test"));
    m.console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(m.console, "Resolve Hostname"));

    // #2 left empty, #3 not an address: the form stays and names the field.
    m.console.key(Key::Down);
    ClearField(m.console);
    m.console.key(Key::Down);
    ClearField(m.console);
    m.console.type("10.0.0.300");
    ASSERT_TRUE(m.console.waitForText("10.0.0.300"));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForText("Ping Address #3: \"10.0.0.300\" is not a valid"));
    EXPECT_FALSE(m.console.find("Pinging"));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForTextGone("is not a valid"));
    // Link-local: the interface's scope in the command.
    ASSERT_TRUE(WaitSettled(m.console, "Resolve Hostname"));
    ClearField(m.console);
    m.console.type("fe80::1");
    ASSERT_TRUE(m.console.waitForText("fe80::1"));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForText("Done."));
    EXPECT_FALSE(m.console.find("Pinging address #2")) << m.console.text();
    EXPECT_TRUE(m.root.hasLogLine("Command \"zrkping -c 3 fe80::1%zrk0\" succeeded"));
}

TEST(TestNetwork, AFailedPingIsShownAndEscStopsAHungOneAtOnce) {
    Menu m;
    ASSERT_TRUE(m.ready());
    // A ping that fails first: the step says so and the test goes on.
    m.root.setFault("zrkping", {{"exitStatus", 1}});
    ASSERT_TRUE(OpenTest(m.console));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForText("Done."));
    EXPECT_TRUE(DialogRow(m.console, "Pinging address #1 (192.168.10.1).").ends_with("Failed."))
        << m.console.dump();
    EXPECT_TRUE(DialogRow(m.console, "Resolving hostname tesk-host01").ends_with("OK."));
    m.console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(m.console, "<Enter> Run Test"));

    m.root.setFault("zrkping", {{"hang", true}});
    m.console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(m.console, "Resolve Hostname"));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForText("Pinging address #1 (192.168.10.1)."));
    ASSERT_TRUE(m.console.waitForQuiet(std::chrono::milliseconds(300)));
    const auto pressed = std::chrono::steady_clock::now();
    m.console.key(Key::Esc);
    ASSERT_TRUE(m.console.waitForTextGone("Testing Management Network"));
    EXPECT_LT(std::chrono::steady_clock::now() - pressed, Scaled(std::chrono::milliseconds(1500)));
    EXPECT_FALSE(m.console.find("Pinging address #2")) << m.console.text();
    // The menu answers while the ping still hangs, and a quit ends the
    // console (and the ping) without waiting for it.
    ASSERT_TRUE(WaitSettled(m.console, "<Enter> Run Test"));
    m.console.signal(SIGTERM);
    EXPECT_EQ(m.console.waitExit(), ExitStatus::Exited(0));
}

TEST(TestNetwork, QuitDuringASlowResolutionEndsTheConsoleCleanly) {
    Menu m;
    ASSERT_TRUE(m.ready());
    m.root.setFault("resolver.resolve", {{"delayMs", 60000}});
    ASSERT_TRUE(OpenTest(m.console));
    m.console.key(Key::Enter);
    ASSERT_TRUE(m.console.waitForText("Resolving hostname tesk-host01"));
    ASSERT_TRUE(m.console.waitForQuiet(std::chrono::milliseconds(300)));
    m.console.key(Key::Esc);
    ASSERT_TRUE(m.console.waitForTextGone("Testing Management Network"));
    ASSERT_TRUE(WaitSettled(m.console, "<Enter> Run Test"));
    m.console.signal(SIGTERM);
    EXPECT_EQ(m.console.waitExit(Scaled(std::chrono::seconds(5))), ExitStatus::Exited(0));
}

}  // namespace
