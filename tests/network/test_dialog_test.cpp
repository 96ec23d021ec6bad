// The management network test from the customization menu: what it pings and
// resolves, how each outcome shows, and that a hung step holds up neither the
// screen nor the console's end.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/session/session_support.h"

namespace {

using namespace SessionTest;
using TeskTest::ExitStatus;
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

TEST(TestNetwork, DefaultHostTestsGreenAndEmptyFieldsAreSkippedBadOnesNamed) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(OpenTest(console));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Done."));
    for (const char* line :
         {"Pinging address #1 (192.168.10.1).", "Pinging address #2 (192.168.10.2).",
          "Pinging address #3 (192.168.10.3).", "Resolving hostname tesk-host01"}) {
        const std::string row = DialogRow(console, line);
        EXPECT_TRUE(row.starts_with(line) && row.ends_with("OK.")) << row << "\n" << console.dump();
    }
    EXPECT_TRUE(console.waitForText("<Enter> OK"));
    EXPECT_TRUE(root.hasLogLine("Command \"zrkping -c 3 192.168.10.1\" succeeded"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForTextGone("Testing Management Network"));
    ASSERT_TRUE(WaitSettled(console, "<Enter> Run Test"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Resolve Hostname"));

    // #2 left empty, #3 not an address: the form stays and names the field.
    console.key(Key::Down);
    ClearField(console);
    console.key(Key::Down);
    ClearField(console);
    console.type("10.0.0.300");
    ASSERT_TRUE(console.waitForText("10.0.0.300"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Ping Address #3: \"10.0.0.300\" is not a valid"));
    EXPECT_FALSE(console.find("Pinging"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForTextGone("is not a valid"));
    // Link-local: the interface's scope in the command.
    ASSERT_TRUE(WaitSettled(console, "Resolve Hostname"));
    ClearField(console);
    console.type("fe80::1");
    ASSERT_TRUE(console.waitForText("fe80::1"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Done."));
    EXPECT_FALSE(console.find("Pinging address #2")) << console.text();
    EXPECT_TRUE(root.hasLogLine("Command \"zrkping -c 3 fe80::1%zrk0\" succeeded"));
}

TEST(TestNetwork, AFailedPingIsShownAndEscStopsAHungStepAtOnce) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(LogIn(console));
    // A ping that fails first: the step says so and the test goes on.
    root.setFault("zrkping", {{"exitStatus", 1}});
    ASSERT_TRUE(OpenTest(console));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Done."));
    EXPECT_TRUE(DialogRow(console, "Pinging address #1 (192.168.10.1).").ends_with("Failed."))
        << console.dump();
    EXPECT_TRUE(DialogRow(console, "Resolving hostname tesk-host01").ends_with("OK."));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "<Enter> Run Test"));

    // <Esc> leaves a slow resolution, which holds nothing up.
    root.setFault("zrkping", nullptr);
    root.setFault("resolver.resolve", {{"delayMs", 60000}});
    ASSERT_TRUE(OpenTest(console));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Resolving hostname tesk-host01"));
    ASSERT_TRUE(console.waitForQuiet(std::chrono::milliseconds(300)));
    console.key(Key::Esc);
    ASSERT_TRUE(console.waitForTextGone("Testing Management Network"));
    ASSERT_TRUE(WaitSettled(console, "<Enter> Run Test"));

    root.setFault("zrkping", {{"hang", true}});
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Resolve Hostname"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Pinging address #1 (192.168.10.1)."));
    ASSERT_TRUE(console.waitForQuiet(std::chrono::milliseconds(300)));
    const auto pressed = std::chrono::steady_clock::now();
    console.key(Key::Esc);
    ASSERT_TRUE(console.waitForTextGone("Testing Management Network"));
    EXPECT_LT(std::chrono::steady_clock::now() - pressed, Scaled(std::chrono::milliseconds(1500)));
    EXPECT_FALSE(console.find("Pinging address #2")) << console.text();
    // The menu answers while the ping and the resolution still hang, and a
    // quit ends the console (and the ping) without waiting for them.
    ASSERT_TRUE(WaitSettled(console, "<Enter> Run Test"));
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(Scaled(std::chrono::seconds(5))), ExitStatus::Exited(0));
}

}  // namespace
