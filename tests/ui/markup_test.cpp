// The layout pass on its own: markup in, laid-out text out.
#include <gtest/gtest.h>

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

TEST(Layout, AlignsWrapsIndentsAndSubstitutes) {
    Tesk::VariableMap vars;
    vars["ip"] = [] { return std::string("10.0.0.1"); };
    const struct {
        const char* markup;
        int width;
        const char* laidOut;
    } cases[] = {
        {"{align:right}OK{/align}", 10, "        OK"},
        {"{align:center}ab{/align}", 10, "    ab"},
        {"{align:padding:6}ab{/align}cd", 20, "ab    cd"},
        // A segment longer than its padding gets none; a bad number pads nothing.
        {"{align:padding:2}abcd{/align}e", 20, "abcde"},
        {"{align:padding:x}ab{/align}c", 20, "abc"},
        {"{align:padding:50}ab{/align}", 6, "ab    "},
        {"{align:left}a{/align}{align:right}b{/align}", 5, "a   b"},
        {"hello world foo", 10, "hello\nworld foo"},
        {"abcdefghijkl", 5, "abcde\nfghij\nkl"},
        {"abcde fg", 5, "abcde\nfg"},  // a space at the end of a full line
        {"{align:right}aaaa bbbb{/align}", 6, "aaaa\n  bbbb"},
        // Wrapped lines keep their line's indent, unless it leaves less than
        // half the line; none in aligned text.
        {"  Network identity acquired from DHCP server", 36,
         "  Network identity acquired from\n  DHCP server"},
        {"IPv4:\n  one two three", 9, "IPv4:\n  one two\n  three"},
        {" abcdefgh", 5, " abcd\n efgh"},
        {"     ab cd", 8, "     ab\ncd"},
        {"{align:right}  ab cd{/align}", 6, "  ab\n    cd"},
        // Variables take columns like any text; unknown names and names with a
        // value are not variables.
        {"https://{ip}/", 40, "https://10.0.0.1/"},
        {"{align:padding:4}{ip}{/align}|", 40, "10.0|"},
        {"go {ip}", 8, "go\n10.0.0.1"},
        {"{nope}x", 10, "{nope}x"},
        {"{ip:4}x", 10, "{ip:4}x"},
        // Malformed markup never fails: a stray closing brace is a byte.
        {"a}b", 10, "a}b"},
        {"a{}b", 10, "ab"},
        {"", 10, ""},
        {"x", -5, "\nx"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LayoutMarkup(c.markup, c.width, vars), c.laidOut)
            << c.markup << " at width " << c.width;
    // An unclosed brace swallows the rest; a literal brace takes one column.
    EXPECT_EQ(VisibleLines(LayoutMarkup("ab{color:red cd ef", 10))[0], "ab");
    EXPECT_EQ(VisibleLines(LayoutMarkup("{align:right}{{}x{/align}", 4))[0], "  {x");
    EXPECT_EQ(Tesk::CountLines("a{color:\n}b"), 1);
    EXPECT_EQ(Tesk::FormatByteSize(1536ull * 1024 * 1024), "1.5 GB");
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

}  // namespace
