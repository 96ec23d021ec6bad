// The welcome screen against simulated hosts: what it says about the host,
// where it puts it, and the keys that lead away from it.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;
using TeskTest::Cell;
using TeskTest::Position;

namespace {

// Where text stands on the screen; a failure (and none) when it is not there.
std::optional<Position> At(ConsoleSession& console, std::string_view text) {
    auto at = console.find(text);
    EXPECT_TRUE(at.has_value()) << "\"" << text << "\" not on the screen:\n" << console.text();
    return at;
}

// A row's text inside the screen's box: from column 8 (where the text areas
// start) up to the right border, trailing blanks removed.
std::string Line(ConsoleSession& console, int row) {
    std::string text = console.row(row);
    const std::string border = "\u2502";
    if (text.ends_with(border)) text.resize(text.size() - border.size());
    while (!text.empty() && text.back() == ' ') text.pop_back();
    // The left border is one cell but three bytes.
    return text.size() > 10 ? text.substr(10) : "";
}

// A change of host data shows after the next key: any key redraws everything.
void EditAndRefresh(ConsoleSession& console, const SimRoot& root,
                    const std::function<void(Json&)>& change) {
    // A key typed while the console still redraws for the previous one is
    // dropped, and quiet may come before that redraw has begun: wait for a
    // longer quiet, so that the refreshing key is read.
    console.waitForQuiet(std::chrono::milliseconds(500));
    root.editState(change);
    console.key(Key::Space);
}

TEST(WelcomeScreen, DefaultHostFactsStandInTheirPlaces) {
    SimRoot root;
    SessionOptions options = LocalConsole(80, 25);
    options.term = "xterm-256color";  // colours
    ConsoleSession console(root, options);
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(console.waitForText("64 GiB Memory"));

    // Upper panel: product, vendor, processors, memory.
    EXPECT_EQ(At(console, "Zerkel Host 8.0.2 (Zerkel 8.0.2 Build 24022510)"), (Position{8, 5}));
    // The model already names the vendor: shown once.
    EXPECT_EQ(At(console, "Acme Systems Inc. RX-740 Server"), (Position{8, 7}));
    EXPECT_FALSE(console.find("Acme Systems Inc. Acme"));
    EXPECT_EQ(At(console, "2 x Zentium(R) Gold 6230 CPU @ 2.10GHz"), (Position{8, 9}));
    EXPECT_EQ(At(console, "64 GiB Memory"), (Position{8, 10}));

    // Lower panel: where to manage the host, host name first, IPv6 sorted.
    EXPECT_EQ(At(console, "To manage this host, go to:"), (Position{8, 13}));
    EXPECT_EQ(Line(console, 14), "https://tesk-host01/");
    EXPECT_EQ(Line(console, 15), "https://192.168.10.21/ (STATIC)");
    EXPECT_EQ(Line(console, 16), "https://[2001:db8:10::21]/ (STATIC)");
    // The link-local address has no mode label.
    EXPECT_EQ(Line(console, 17).rfind("https://[fe80::", 0), 0u) << Line(console, 17);
    EXPECT_EQ(Line(console, 17).back(), '/');
    EXPECT_FALSE(console.find("Warning:"));

    // 25 lines: 12 for the upper panel, the odd one to the lower; the footer
    // on the lower panel's second-to-last row, F12 pushed to the right.
    const Cell upper = console.cell(40, 11), lower = console.cell(40, 12);
    EXPECT_EQ(upper.bg, console.cell(40, 1).bg);
    EXPECT_EQ(lower.bg, console.cell(40, 23).bg);
    EXPECT_FALSE(upper.bg == lower.bg);
    EXPECT_EQ(At(console, "<F2> Customize System/View Logs"), (Position{2, 23}));
    auto f12 = At(console, "<F12> Shut Down/Restart");
    ASSERT_TRUE(f12);
    EXPECT_EQ(f12->row, 23);
    EXPECT_EQ(f12->col + static_cast<int>(std::string("<F12> Shut Down/Restart").size()), 78);
    // Key names in the panel's text colour, their labels in dark-grey.
    EXPECT_FALSE(console.cell(2, 23).fg == console.cell(7, 23).fg);
}

TEST(WelcomeScreen, DhcpWithoutLeaseWaitsAndWarnsUnlessAuditModeSaysMore) {
    SimRoot root("dhcp");
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(console.waitForText("https://0.0.0.0/ (Waiting for DHCP...)"));
    // Host name "localhost" is no way to reach the host: the IPv4 line comes first.
    auto heading = At(console, "To manage this host, go to:");
    ASSERT_TRUE(heading);
    EXPECT_EQ(Line(console, heading->row + 1), "https://0.0.0.0/ (Waiting for DHCP...)");
    EXPECT_FALSE(console.find("localhost"));
    EXPECT_TRUE(console.find("Warning: DHCP lookup failed."));

    // Audit mode replaces the DHCP warning instead of adding to it.
    EditAndRefresh(console, root, [](Json& s) { s["bootOption"]["auditMode"] = true; });
    ASSERT_TRUE(console.waitForText("Warning: Host is running in audit mode."));
    EXPECT_FALSE(console.find("DHCP lookup failed"));
}

TEST(WelcomeScreen, CustomMessageHidesEverythingYetTheKeysStillWork) {
    SimRoot root;
    root.editState([](Json& s) {
        s["systemInfo"]["welcomeMessage"] =
            "Property of the {color:red}Lab 4{/color} team\nVersion {kovaversion} at "
            "{ip}{servicetag}.";
    });
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(WaitSettled(console, "Property of the Lab 4 team"));
    // The host's facts fill the message's variables; one it cannot tell is empty.
    EXPECT_TRUE(console.find("Version 8.0.2 at 192.168.10.21."));
    EXPECT_EQ(console.find("Property of the"), (Position{2, 2}));
    for (const char* hidden : {"To manage", "Zerkel Host", "Memory", "<F2>", "<F12>", "https://"})
        EXPECT_FALSE(console.find(hidden)) << hidden;

    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    ASSERT_TRUE(Dismiss(console, "Login Name:", Key::Esc));
    EXPECT_TRUE(console.find("Property of the Lab 4 team"));

    // Back to the default screen, rebuilt from nothing, once the message is gone.
    EditAndRefresh(console, root, [](Json& s) { s["systemInfo"]["welcomeMessage"] = ""; });
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_TRUE(console.waitForText("64 GiB Memory"));
    EXPECT_FALSE(console.find("Property of"));
}

TEST(WelcomeScreen, WithoutAdapterSaysSoAndRaisesTheAlertOnce) {
    SimRoot root("nonic");
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(console.waitForText("No compatible network adapter found. Please consult"));
    EXPECT_FALSE(console.find("To manage this host"));
    // Every key redraws the screen; the alert stays raised once.
    for (int i = 0; i < 3; ++i) {
        console.waitForQuiet();
        console.key(Key::Space);
    }
    // The keys before it are done when a change made now shows.
    EditAndRefresh(console, root, [](Json& s) { s["hardware"]["memory"]["totalPages"] = 262144; });
    ASSERT_TRUE(console.waitForText("1 GiB Memory"));
    // The lower panel is drawn after the memory line: wait for the frame to end.
    EXPECT_TRUE(console.waitForText("No compatible network adapter found. Please consult"));
    EXPECT_EQ(root.stateValue("/systemInfo/alerts"),
              Json::array({"No compatible network adapter found."}));
}

}  // namespace
