// FIFOs in place of the files the console writes (its pid file, the log
// mirrors) hold nothing up: it logs in and out and still obeys SIGTERM.
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

constexpr char kFooter[] = "<F2> Customize System/View Logs";

TEST(BadHostState, FifosInPlaceOfTheConsolesOwnFilesHoldNothingUp) {
    // The pid file and the log mirrors the console writes: a FIFO without a
    // reader would hold an open for writing (and one for reading) for ever.
    for (const char* file :
         {"/var/run/tesk.pid", "/var/log/audit.log", "/var/log/noxd.log", "/var/log/syslog.log"}) {
        SCOPED_TRACE(file);
        SimRoot root;
        std::filesystem::remove(root.path(file));
        ASSERT_EQ(::mkfifo(root.path(file).c_str(), 0644), 0);
        ConsoleSession console(root, LocalConsole());
        ASSERT_TRUE(LogIn(console));
        console.key(Key::Esc);
        EXPECT_TRUE(console.waitForText(kFooter));
        console.signal(SIGTERM);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    }
}

}  // namespace
