// What the console makes of host state it cannot use: values of the wrong
// kind, a document that is no object, files that are FIFOs. It draws what it
// can, logs what it could not read and still obeys SIGTERM.
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

constexpr char kFooter[] = "<F2> Customize System/View Logs";

// SIGTERM ends the console with status 0, whatever it showed.
void EndsOnSigterm(ConsoleSession& console) {
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
}

struct BadValue {
    const char* what;
    std::function<void(Json&)> edit;
    std::vector<const char*> shown;  // what the welcome screen still shows
    const char* logged;              // the failure's log line (a fragment)
};

TEST(BadHostState, AWrongValueFailsOnlyItsOwnQuery) {
    const BadValue cases[] = {
        {"host name a number",
         [](Json& s) { s["network"]["dns"]["hostname"] = 42; },
         {"https://192.168.10.21/ (STATIC)", "Acme Systems Inc. RX-740 Server", "64 GiB Memory"},
         "Getting host name failed: Host state value 'hostname' is number, expected string"},
        {"processor count a text",
         [](Json& s) { s["hardware"]["cpu"]["packages"] = "two"; },
         {"https://tesk-host01/", "Acme Systems Inc. RX-740 Server", "64 GiB Memory"},
         "Host state value 'packages' is string, expected integer"},
        {"memory size negative",
         [](Json& s) { s["hardware"]["memory"]["totalPages"] = -5; },
         {"https://tesk-host01/", "2 x Zentium(R) Gold 6230 CPU @ 2.10GHz"},
         "Host state value 'totalPages' is -5, out of range"},
    };
    for (const BadValue& c : cases) {
        SCOPED_TRACE(c.what);
        SimRoot root;
        root.editState(c.edit);
        ConsoleSession console(root, LocalConsole(80, 25));
        for (const char* text : c.shown) EXPECT_TRUE(console.waitForText(text)) << text;
        EXPECT_TRUE(root.waitForLogLine(c.logged));
        EXPECT_FALSE(root.hasLogLine("TESK aborted by exception"));
        EndsOnSigterm(console);
    }
}

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
        EndsOnSigterm(console);
    }
}

}  // namespace
