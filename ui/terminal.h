// Curses set-up, the six-colour palette, colour attributes, the extra escape
// sequences, the cursor state and resizing.
#pragma once

#include <curses.h>
#include <termios.h>

namespace Tesk {

// The six colours, by curses colour number.
enum Colour : int {
    ColourBlack = 0,
    ColourRed = 1,
    ColourLightGrey = 2,
    ColourYellow = 3,
    ColourDarkGrey = 6,
    ColourWhite = 7,
};

// The colours in the order the pair set-up walks them.
inline constexpr int kPaletteOrder[6] = {7, 0, 3, 2, 6, 1};

// use_default_colors, then either the redefined palette and all 36 pairs or
// the cannot-change-colours flag.
void SetupColours();

// Set when the terminal cannot redefine its colours: every colour attribute
// is then standout (black and dark-grey backgrounds) or normal.
bool CannotChangeColours();
void SetCannotChangeColours(bool cannot);

// The colour pair for (background, foreground): f + b * base + 1, where base is
// COLORS, or 8 when COLORS is so large that the pair numbers would not fit in
// a curses attribute (256-colour terminals).
int ColourPairNumber(int background, int foreground);

// The only way to turn colours into a curses attribute.
attr_t ColourAttr(int background, int foreground);

// Registers every terminal's variant of the function and cursor keys.
void RegisterEscapeSequences();

// The curses set-up after initscr/newterm and start_color: cursor hidden,
// cbreak, noecho, keypad on stdscr, colours, escape sequences, refresh.
void SetupCurses();

// Cursor state, saved and restored by top-level windows.
struct CursorState {
    bool visible = false;
    int column = 0;
    int row = 0;
};
CursorState& Cursor();
void SetCursorVisible(bool visible);
// Puts the terminal's cursor where the cursor state says (every refresh of a
// window leaves it in that window): shown at its column and row, or hidden.
// The key reader calls it before it waits, so the caret stands where typing
// goes.
void ShowTerminalCursor();

// The terminal settings of descriptor 1 as they were at start-up (filled in
// by the start-up, given to the pager).
termios& StartupTerminalSettings();

// Reads the size of descriptor 0; resizes curses to it unless a side is 0.
void ResizeTerminal();

}  // namespace Tesk
