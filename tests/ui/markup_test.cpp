// The layout pass on its own: markup in, laid-out text out.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "ui/markup.h"

namespace {

using Tesk::LayoutMarkup;

// The visible columns of each laid-out line (tags removed).
std::vector<std::string> VisibleLines(const std::string& laidOut) {
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < laidOut.size(); ++i) {
        char c = laidOut[i];
        if (c == '\n') {
            lines.emplace_back();
        } else if (c == '{') {
            std::size_t close = laidOut.find('}', i + 1);
            if (close == std::string::npos) break;
            if (laidOut.compare(i, close - i + 1, "{{}") == 0) lines.back().push_back('{');
            i = close;
        } else {
            lines.back().push_back(c);
        }
    }
    return lines;
}

TEST(Layout, AlignmentPadsTheSegment) {
    EXPECT_EQ(LayoutMarkup("{align:right}OK{/align}", 10), "        OK");
    EXPECT_EQ(LayoutMarkup("{align:center}ab{/align}", 10), "    ab");
    EXPECT_EQ(LayoutMarkup("{align:padding:6}ab{/align}cd", 20), "ab    cd");
    // A segment longer than its padding gets none; a bad number pads nothing.
    EXPECT_EQ(LayoutMarkup("{align:padding:2}abcd{/align}e", 20), "abcde");
    EXPECT_EQ(LayoutMarkup("{align:padding:x}ab{/align}c", 20), "abc");
    // Padding never runs past the line.
    EXPECT_EQ(LayoutMarkup("{align:padding:50}ab{/align}", 6), "ab    ");
    // Left (or any other value) keeps the mode and only marks a segment.
    EXPECT_EQ(LayoutMarkup("{align:left}a{/align}{align:right}b{/align}", 5), "a   b");
    EXPECT_EQ(LayoutMarkup("{/align}x", 5), "x");
}

TEST(Layout, FooterKeepsColourTagsAndFillsTheLine) {
    const std::string footer =
        "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}{align:right}"
        "{color:black}<Esc>{/color}{/align}";
    std::string out = LayoutMarkup(footer, 30);
    EXPECT_NE(out.find("{color:black}<Esc>{/color}"), std::string::npos);
    auto lines = VisibleLines(out);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "<Up/Down> Select         <Esc>");
}

TEST(Layout, WrapsAtTheLastSpaceAndCutsLongWords) {
    EXPECT_EQ(LayoutMarkup("hello world foo", 10), "hello\nworld foo");
    EXPECT_EQ(LayoutMarkup("abcdefghijkl", 5), "abcde\nfghij\nkl");
    EXPECT_EQ(LayoutMarkup("ab\ncd", 5), "ab\ncd");
    // A space exactly at the end of a full line breaks there.
    EXPECT_EQ(LayoutMarkup("abcde fg", 5), "abcde\nfg");
    // A right-aligned segment that wraps is aligned on its new line.
    EXPECT_EQ(LayoutMarkup("{align:right}aaaa bbbb{/align}", 6), "aaaa\n  bbbb");
}

TEST(Layout, WrappedLinesKeepTheIndentOfTheirLine) {
    EXPECT_EQ(LayoutMarkup("  Network identity acquired from DHCP server", 36),
              "  Network identity acquired from\n  DHCP server");
    // Every line keeps its own indent; a word cut hard continues indented too.
    EXPECT_EQ(LayoutMarkup("IPv4:\n  one two three", 9), "IPv4:\n  one two\n  three");
    EXPECT_EQ(LayoutMarkup(" abcdefgh", 5), " abcd\n efgh");
    // No indent that leaves less than half the line, none in aligned text.
    EXPECT_EQ(LayoutMarkup("     ab cd", 8), "     ab\ncd");
    EXPECT_EQ(LayoutMarkup("{align:right}  ab cd{/align}", 6), "  ab\n    cd");
}

TEST(Layout, NoLineIsWiderThanTheArea) {
    const std::string text =
        "Restarting the management network will result in a brief network outage that may "
        "temporarily affect running virtual machines.\n\n{color:red}Note:{/color} a "
        "supercalifragilisticexpialidocious word and {align:right}right text{/align} end";
    for (int width = 1; width <= 40; ++width) {
        for (const std::string& line : VisibleLines(LayoutMarkup(text, width)))
            EXPECT_LE(static_cast<int>(line.size()), width) << "width " << width << ": " << line;
    }
}

TEST(Layout, VariablesAreSubstitutedAndTruncatedByPadding) {
    Tesk::VariableMap vars;
    vars["ip"] = [] { return std::string("10.0.0.1"); };
    EXPECT_EQ(LayoutMarkup("https://{ip}/", 40, vars), "https://10.0.0.1/");
    EXPECT_EQ(LayoutMarkup("{align:padding:4}{ip}{/align}|", 40, vars), "10.0|");
    // A value takes columns like any text and wraps.
    EXPECT_EQ(LayoutMarkup("go {ip}", 8, vars), "go\n10.0.0.1");
    // Unknown names and names with a value are not variables.
    EXPECT_EQ(LayoutMarkup("{nope}x", 10, vars), "{nope}x");
    EXPECT_EQ(LayoutMarkup("{ip:4}x", 10, vars), "{ip:4}x");
}

TEST(Layout, MalformedMarkupNeverFails) {
    // An unclosed brace swallows the rest; a stray closing brace is a byte.
    EXPECT_EQ(VisibleLines(LayoutMarkup("ab{color:red cd ef", 10))[0], "ab");
    EXPECT_EQ(LayoutMarkup("a}b", 10), "a}b");
    EXPECT_EQ(LayoutMarkup("a{}b", 10), "ab");
    EXPECT_EQ(LayoutMarkup("", 10), "");
    EXPECT_EQ(LayoutMarkup("abc", 0).find_first_not_of("abc\n"), std::string::npos);
    EXPECT_EQ(LayoutMarkup("x", -5), "\nx");
    // A literal brace takes one column.
    EXPECT_EQ(VisibleLines(LayoutMarkup("{align:right}{{}x{/align}", 4))[0], "  {x");
    EXPECT_EQ(Tesk::EscapeMarkup("a{b}"), "a{{}b}");
}

TEST(Layout, CountsLines) {
    EXPECT_EQ(Tesk::CountLines(""), 1);
    EXPECT_EQ(Tesk::CountLines("a\nb\n"), 3);
    EXPECT_EQ(Tesk::CountLines("a{color:\n}b"), 1);
}

TEST(Layout, FormatsByteSizes) {
    EXPECT_EQ(Tesk::FormatByteSize(1536ull * 1024 * 1024), "1.5 GB");
    EXPECT_EQ(Tesk::FormatByteSize(512ull * 1024 * 1024), "512.0 MB");
    EXPECT_EQ(Tesk::FormatByteSize(3ull << 50), "3.0 PB");
}

}  // namespace
