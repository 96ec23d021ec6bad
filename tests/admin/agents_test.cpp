// Restarting the management agents: <F11> to confirm, the services stopped
// and started whatever they answer, the optional live-core worker with its
// alert, and a console that ends while the worker still runs.
#include <algorithm>

#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

constexpr std::string_view kConfirm = "Restart Management Agents: Confirm";

bool OpenAgentsDialog(ConsoleSession& console) {
    return OpenEntry(console, "Troubleshooting Options", "<Esc> Exit") &&
           OpenSelected(console, "Restart Management Agents", kConfirm);
}

// With the live-core worker asked for: <Space>, <F11>, and the last step done.
bool RestartWithWorker(ConsoleSession& console) {
    console.type(" ");
    if (!console.waitForText("[X] Collect extra troubleshooting information")) return false;
    console.key(FKey(11));
    return WaitSettled(console, "Starting management agents. Done.");
}

bool HasAlert(const SimRoot& root, const std::string& text) {
    auto alerts = root.stateValue("/systemInfo/alerts");
    return alerts && std::find(alerts->begin(), alerts->end(), text) != alerts->end();
}

TEST(Agents, F11RestartsTheServicesAndTheWorkerOnlyWhenAsked) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(OpenAgentsDialog(console));
    EXPECT_TRUE(console.find("[ ] Collect extra troubleshooting information"));
    console.key(FKey(11));
    ASSERT_TRUE(WaitSettled(console, "Starting management agents. Done."));
    EXPECT_TRUE(console.find("Stopping management agents. Done."));
    EXPECT_EQ(StateText(root, "/hostAgent/stops"), "1");
    EXPECT_EQ(StateText(root, "/hostAgent/starts"), "1");
    EXPECT_EQ(StateText(root, "/hostAgent/running"), "true");
    EXPECT_FALSE(root.logLinesWith("Restarting host agents").empty());
    EXPECT_FALSE(
        root.logLinesWith("nox.user.tesk.restarting.hostagents", "/var/log/noxd.log").empty());
    EXPECT_TRUE(root.logLinesWith("Executing zrkbacktrace").empty());

    ASSERT_TRUE(Dismiss(console, "Starting management agents."));
    ASSERT_TRUE(WaitSettled(console, "Troubleshooting Mode Options"));

    // Asked for, the worker takes a live core; a failing stop still says
    // "Done." (the agents keep running, so the core can be taken).
    root.setFault("services.sh:stop", {{"exitStatus", 1}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, kConfirm));
    ASSERT_TRUE(RestartWithWorker(console));
    EXPECT_TRUE(console.find("Collecting host agent live core information. Done."));
    EXPECT_TRUE(console.find("Stopping management agents. Done."));
    ASSERT_TRUE(console.waitFor([&] { return HasAlert(root, "Hagentd core dump completed"); },
                                "the live core alert"));
    EXPECT_EQ(root.stateValue("/backtraces")->size(), 1u);

    // A start that never ends keeps the screen on the running step, which
    // is not grey like the finished ones.
    root.setFault("services.sh:start", {{"hang", true}});
    ASSERT_TRUE(Dismiss(console, "Starting management agents."));
    ASSERT_TRUE(WaitSettled(console, "Troubleshooting Mode Options"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kConfirm));
    console.key(FKey(11));
    ASSERT_TRUE(WaitSettled(console, "Starting management agents."));
    auto finished = console.find("Stopping management agents. Done.");
    auto running = console.find("Starting management agents.");
    ASSERT_TRUE(finished && running);
    EXPECT_FALSE(console.find("Starting management agents. Done."));
    EXPECT_NE(console.cell(finished->col, finished->row).fg,
              console.cell(running->col, running->row).fg);
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
}

// A failing worker logs it and raises no alert; a hung one outlives its
// dialog, and the console ends at once all the same.
TEST(Agents, WorkerThatFailsOrHangsHoldsNothingUp) {
    SimRoot root;
    root.setFault("zrkbacktrace", {{"exitStatus", 1}});
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenAgentsDialog(console));
    ASSERT_TRUE(RestartWithWorker(console));
    ASSERT_TRUE(root.waitForLogLine("zrkbacktrace failed, probably hagentd was down"));
    EXPECT_FALSE(HasAlert(root, "Hagentd core dump completed"));
    ASSERT_TRUE(Dismiss(console, "Starting management agents."));

    root.setFault("zrkbacktrace", {{"hang", true}});
    ASSERT_TRUE(WaitSettled(console, "Troubleshooting Mode Options"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kConfirm));
    ASSERT_TRUE(RestartWithWorker(console));
    ASSERT_TRUE(Dismiss(console, "Starting management agents."));
    // Still usable while the worker waits for its command.
    console.key(Key::Up);
    ASSERT_TRUE(console.waitFor(
        [&] { return PaneHeading(console).starts_with("Modify TESK idle timeout"); },
        "the row above selected"));
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
}

}  // namespace
