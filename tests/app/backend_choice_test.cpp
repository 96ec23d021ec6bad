// The host backend's choice: by TESK_BACKEND or else by TESK_ROOT, among the
// backends built; a name that cannot be served ends the console before
// anything else happens.
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "app/backend_choice.h"
#include "tests/harness/console_session.h"

namespace {

using TeskTest::ConsoleSession;
using TeskTest::ExitStatus;
using TeskTest::SessionOptions;
using TeskTest::SimRoot;

const std::string kUnknown =
    "Unknown host backend \"nonsense\" in TESK_BACKEND (known: simulated, linux)";

TEST(BackendChoice, NamedOrFollowingTheRootAmongTheBuiltOnes) {
    struct Case {
        const char* requested;
        bool simulatedRoot;
        const char* chosen;  // null: the error below
        std::string error;
    };
    const Case cases[] = {
        {nullptr, true, "simulated", ""},
        {nullptr, false, "linux", ""},  // the machine's own
        {"", true, "simulated", ""},
        {"simulated", false, "simulated", ""},
        {"linux", true, "linux", ""},
        {"linux", false, "linux", ""},
        {"nonsense", false, nullptr, kUnknown},  // on a simulated root: the test below
    };
    for (const Case& c : cases) {
        const std::string what = std::string(c.requested ? c.requested : "(unset)") +
                                 (c.simulatedRoot ? " on a simulated root" : " on /");
        const Tesk::BackendChoice choice = Tesk::ChooseBackend(c.requested, c.simulatedRoot);
        EXPECT_EQ(choice.error, c.error) << what;
        if (c.chosen) {
            ASSERT_NE(choice.entry, nullptr) << what;
            EXPECT_STREQ(choice.entry->name, c.chosen) << what;
        } else {
            EXPECT_EQ(choice.entry, nullptr) << what;
        }
    }
}

// The console started without a terminal, stdout and stderr in files of the
// root: its exit status.
int RunWithoutTerminal(const SimRoot& root, const std::string& backend) {
    const std::string command = "env -i PATH=/usr/bin:/bin TESK_ROOT='" + root.path() +
                                "' TESK_BACKEND='" + backend + "' " + TESK_BINARY +
                                " </dev/null >'" + root.path("/tmp/stdout") + "' 2>'" +
                                root.path("/tmp/stderr") + "'";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(BackendChoice, AnUnservableNameEndsTheConsoleBeforeItStarts) {
    SimRoot root;
    EXPECT_EQ(RunWithoutTerminal(root, "nonsense"), 1);
    EXPECT_EQ(root.tryReadFile("/tmp/stderr"), "TESK: " + kUnknown + "\n");
    EXPECT_EQ(root.tryReadFile("/tmp/stdout"), "") << "nothing drawn";
    EXPECT_EQ(root.logLinesWith(kUnknown).size(), 1u) << root.logTail();
    EXPECT_FALSE(root.hasLogLine("Starting TESK"));
    EXPECT_FALSE(root.exists("/var/run/tesk.pid"));
}

}  // namespace
