// Restarting the management network from the customization menu: the
// confirmation, the restart and its progress, the log line and the event.
#include <gtest/gtest.h>

#include <thread>

#include "tests/session/session_support.h"

namespace {

using namespace SessionTest;
using TeskTest::Scaled;

bool OpenRestart(ConsoleSession& console) {
    return OpenSelected(console, "Restart Management Network", "Restart management network now?");
}

TEST(RestartNetwork, F11RestartsTheInterfaceAndShowsItsAddresses) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole(100, 30));
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(OpenRestart(console));
    EXPECT_TRUE(console.find("Restart Management Network: Confirm"));
    EXPECT_TRUE(console.find("<F11> OK  <Esc> Cancel"));
    // Only F11 and Esc answer; Esc leaves without a restart.
    console.key(Key::Enter);
    std::this_thread::sleep_for(Scaled(std::chrono::milliseconds(300)));
    EXPECT_TRUE(console.find("Restart management network now?"));
    ASSERT_TRUE(Dismiss(console, "Restart management network now?", Key::Esc));
    EXPECT_FALSE(root.hasLogLine("Restarting zrk0"));

    ASSERT_TRUE(WaitSettled(console, "<Enter> Restart"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Restart management network now?"));
    console.key(FKey(11));
    ASSERT_TRUE(console.waitForText("Done.", Scaled(std::chrono::seconds(10))));
    ASSERT_TRUE(console.waitFor([&] { return console.find("<Enter> OK").has_value(); }, "footer"));
    EXPECT_TRUE(console.find("Please wait while the management network restarts."));
    EXPECT_TRUE(console.find("Stopping management network. Done."));
    EXPECT_TRUE(console.find("Starting management network."));
    EXPECT_TRUE(console.find("   IP address is  192.168.10.21"));
    EXPECT_TRUE(console.find("   IP address is  2001:db8:10::21/64"));
    EXPECT_TRUE(root.waitForLogLine("Restarting zrk0"));
    EXPECT_TRUE(root.hasLogLine("nox.user.tesk.network.restart", "/var/log/noxd.log"));
    // The interface is up again, and the restart is no reason to ping badly.
    EXPECT_EQ(root.stateValue("/network/zrkNics/0/up"), TeskTest::Json(true));

    console.key(Key::Esc);
    std::this_thread::sleep_for(Scaled(std::chrono::milliseconds(300)));
    EXPECT_TRUE(console.find("Stopping management network."));
    EXPECT_TRUE(Dismiss(console, "Stopping management network."));
}

}  // namespace
