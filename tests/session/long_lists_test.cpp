// Host lists far longer than any screen shows: 50,000 IPv6 addresses on the
// management interface and 100,000 search domains. Every screen that shows
// one is drawn, and a quit is obeyed whatever the console was doing.
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

#include "tests/network/window_support.h"

using namespace NetworkTest;

namespace {

void LengthenLists(Json& state) {
    Json& addresses = state["network"]["zrkNics"][0]["config"]["ipv6Addresses"];
    for (int i = 0; i < 50000; ++i) {
        char address[40];
        std::snprintf(address, sizeof address, "2001:db8:%x:%x::1", i / 256 + 1, i % 256);
        addresses.push_back(
            {{"address", address}, {"prefixLength", 64}, {"type", "static"}, {"scope", "global"}});
    }
    Json domains = Json::array();
    for (int i = 0; i < 100000; ++i) domains.push_back("d" + std::to_string(i) + ".example");
    state["network"]["dns"]["searchDomains"] = domains;
}

// Every step waits long: what is checked is that each screen is drawn at
// all, not how fast (a sanitizer build on a busy machine reads and copies
// such a state slowly; speed is for bench/).
std::chrono::milliseconds Slow() {
    return TeskTest::Scaled(std::chrono::seconds(60));
}

bool Shown(ConsoleSession& console, std::string_view text) {
    return console.waitForText(text, Slow()) &&
           console.waitForQuiet(std::chrono::milliseconds(400), Slow());
}

// Moves down until the pane's heading is heading, waiting for each move.
bool MoveTo(ConsoleSession& console, const std::string& heading) {
    for (int i = 0; i < 12 && PaneHeading(console) != heading; ++i) {
        const std::string before = PaneHeading(console);
        console.key(Key::Down);
        if (!console.waitFor([&] { return PaneHeading(console) != before; }, "the selection moved",
                             Slow()))
            return false;
    }
    return PaneHeading(console) == heading &&
           console.waitForQuiet(std::chrono::milliseconds(400), Slow());
}

// Logs in and opens the management network window.
bool OpenNetworkWindow(ConsoleSession& console) {
    if (!Shown(console, "iB Memory")) return false;
    console.key(FKey(2));
    if (!Shown(console, "Login Name:")) return false;
    EnterCredentials(console, "root", kPassword);
    if (!Shown(console, "<Esc> Log Out") || !MoveTo(console, "Configure Management Network"))
        return false;
    console.key(Key::Enter);
    return Shown(console, "<Esc> Exit");
}

TEST(LongHostLists, EveryScreenShowingOneIsDrawnAndAQuitObeyed) {
    SimRoot root;
    root.editState(LengthenLists);
    const struct {
        const char* where;
        std::function<bool(ConsoleSession&)> reach;
    } places[] = {
        {"welcome screen",
         [](ConsoleSession& c) {
             return Shown(c, "iB Memory") && c.find("https://[2001:db8:") && c.find("...");
         }},
        {"IPv6 pane",
         [](ConsoleSession& c) {
             return OpenNetworkWindow(c) && MoveTo(c, "IPv6 Configuration") && Shown(c, "...");
         }},
        {"suffixes pane and dialog, at the end of the text",
         [](ConsoleSession& c) {
             if (!OpenNetworkWindow(c) || !MoveTo(c, "Custom DNS Suffixes") ||
                 !Shown(c, "d0.example, d1.example"))
                 return false;
             c.key(Key::Enter);
             if (!Shown(c, "Suffixes:")) return false;
             c.key(Key::End);
             return Shown(c, "d99999.example");
         }},
    };
    for (const auto& place : places) {
        SCOPED_TRACE(place.where);
        ConsoleSession console(root, Console());
        EXPECT_TRUE(place.reach(console));
        console.signal(SIGTERM);
        EXPECT_EQ(console.waitExit(TeskTest::Scaled(std::chrono::seconds(3))),
                  ExitStatus::Exited(0));
    }
}

}  // namespace
