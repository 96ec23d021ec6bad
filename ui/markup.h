// The inline markup of every screen text: brace tags for colours, alignment
// and host variables, laid out for a width and then drawn into a curses window.
//
//   {color:NAME} ... {/color}      foreground (on the current background)
//   {bgcolor:NAME} ... {/bgcolor}  background
//   {align:right|center|padding:N} ... {/align}
//   {NAME}                         a variable's current value
//   {{}                            a literal "{" (one column)
//
// Malformed markup never fails: an unclosed "{" swallows the rest of the text,
// a stray "}" is an ordinary byte, unknown tags are dropped and unknown colour
// names mean black.
#pragma once

#include <curses.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Tesk {

using VariableProvider = std::function<std::string()>;
using VariableMap = std::map<std::string, VariableProvider, std::less<>>;
using ColourMap = std::map<std::string, int, std::less<>>;

// "white" 7, "black" 0, "dark-grey" 6, "light-grey" 2, "yellow" 3, "red" 1.
const ColourMap& StandardColours();

// A colour name's number; unknown names are black.
int ColourByName(const ColourMap& colours, std::string_view name);

// The host-fact variables every text area knows ("ip", "kovaversion", ...),
// each reading as the empty text: the screen that shows an area gives it the
// providers it has (TextArea::setVariable).
VariableMap EmptyHostVariables();

// A size as "%lu.%lu %cB" with the unit from "MGTP" (1 MiB upwards).
std::string FormatByteSize(std::uint64_t bytes);

// The text with every "{" made literal, for user input shown inside markup.
std::string EscapeMarkup(std::string_view text);

// The layout pass: wraps the text at the last space of a line (or cuts a word
// longer than the line), applies alignment and padding and substitutes
// variables. Colour tags pass through unchanged; "\n" separates the lines.
// Columns are counted per UTF-8 character (ui/utf8.h: wide characters two,
// combining marks none, invalid bytes one each). A line that starts with
// spaces keeps that indent on the lines its wrapping makes (in left-aligned
// text, when the indent is less than half the width). A pure function of its
// inputs and the process's locale.
std::string LayoutMarkup(std::string_view text, int width, const VariableMap& variables = {});

// The number of lines of a laid-out text (an empty text has one).
int CountLines(std::string_view laidOut);

// What the drawing pass needs besides the text.
struct DrawTarget {
    WINDOW* window = nullptr;
    int width = 0;
    int height = 0;
    int firstLine = 0;   // lines before it are read for their colours only
    bool active = true;  // inactive: colour tags change nothing
    int background = 0;  // the area's own colours
    int foreground = 7;
    const ColourMap* colours = nullptr;  // StandardColours() when null
};

// The drawing pass: prints the laid-out text line by line from (0, 0),
// switching colours at the tags, clipping at the width and height.
void DrawMarkup(const DrawTarget& target, std::string_view laidOut);

}  // namespace Tesk
