// The welcome screen of the default simulated host: what it says about the
// host, where it puts it and in which colours.
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

}  // namespace
