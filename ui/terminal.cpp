#include "ui/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <string>

#include "platform/syslog.h"

namespace Tesk {

namespace {

struct Rgb {
    int colour, r, g, b;
};

// Redefined in this order; black is never redefined.
constexpr Rgb kRedefinitions[] = {
    {ColourYellow, 1000, 800, 0},     {ColourDarkGrey, 334, 334, 334},
    {ColourLightGrey, 667, 667, 667}, {ColourWhite, 1000, 1000, 1000},
    {ColourRed, 1000, 0, 0},
};

bool g_cannotChangeColours = false;

int PairBase() {
    // A pair number travels inside a chtype attribute, which holds 0..255.
    int base = COLORS;
    if (base <= 0 || 7 + 7 * base + 1 > 255) base = 8;
    return base;
}

}  // namespace

bool CannotChangeColours() {
    return g_cannotChangeColours;
}

void SetCannotChangeColours(bool cannot) {
    g_cannotChangeColours = cannot;
}

int ColourPairNumber(int background, int foreground) {
    return foreground + background * PairBase() + 1;
}

void SetupColours() {
    use_default_colors();
    if (can_change_color()) {
        for (const auto& c : kRedefinitions)
            init_color(static_cast<short>(c.colour), c.r, c.g, c.b);
        for (int b : kPaletteOrder)
            for (int f : kPaletteOrder)
                init_pair(static_cast<short>(ColourPairNumber(b, f)), static_cast<short>(f),
                          static_cast<short>(b));
    } else {
        g_cannotChangeColours = true;
    }
}

attr_t ColourAttr(int background, int foreground) {
    if (!g_cannotChangeColours) return COLOR_PAIR(ColourPairNumber(background, foreground));
    return (background == ColourBlack || background == ColourDarkGrey) ? A_STANDOUT : A_NORMAL;
}

void RegisterEscapeSequences() {
    auto def = [](const std::string& seq, int key) { define_key(seq.c_str(), key); };
    def("\033R", KEY_RESIZE);
    const char* vtF[] = {"11", "12", "13", "14", "15", "17", "18", "19", "20", "21", "23", "24"};
    for (int i = 0; i < 12; ++i) def(std::string("\033[") + vtF[i] + "~", KEY_F(i + 1));
    const char escF[] = "1234567890!@";
    for (int i = 0; i < 12; ++i) def(std::string("\033") + escF[i], KEY_F(i + 1));
    def("\033h", KEY_HOME);
    def("\033k", KEY_END);
    def("\033+", KEY_IC);
    def("\033-", KEY_DC);
    def("\033?", KEY_PPAGE);
    def("\033/", KEY_NPAGE);
    for (int i = 0; i < 12; ++i)
        def(std::string("\033[") + static_cast<char>('M' + i), KEY_F(i + 1));
    for (int i = 0; i < 9; ++i)
        def(std::string("\033O") + static_cast<char>('P' + i), KEY_F(i + 1));
    def("\033OY", KEY_F(12));
    const int arrows[] = {KEY_UP, KEY_DOWN, KEY_RIGHT, KEY_LEFT};
    for (int i = 0; i < 4; ++i) def(std::string("\033O") + static_cast<char>('A' + i), arrows[i]);
    for (int i = 0; i < 4; ++i) def(std::string("\033[") + static_cast<char>('A' + i), arrows[i]);
    const char* editing[] = {"2", "3", "1", "4", "5", "6"};
    const int editingKeys[] = {KEY_IC, KEY_DC, KEY_HOME, KEY_END, KEY_PPAGE, KEY_NPAGE};
    for (int i = 0; i < 6; ++i) def(std::string("\033[") + editing[i] + "~", editingKeys[i]);
    def("\177", KEY_BACKSPACE);
}

void SetupCurses() {
    // Until a screen has been ended once and refreshed again, ncurses (6.4)
    // sends its output at every cursor movement: a frame went out in about
    // 70 write(2)s of some 60 bytes. Ended before anything is drawn and
    // resumed by the refresh below, it sends each refresh in one write (as
    // far as its output buffer holds).
    endwin();
    SetCursorVisible(false);
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    // Every refresh is drawn whole: no look at the keyboard (a poll per
    // refresh) to cut a refresh short when a key is waiting.
    typeahead(-1);
    SetupColours();
    RegisterEscapeSequences();
    refresh();
}

CursorState& Cursor() {
    static CursorState state;
    return state;
}

void SetCursorVisible(bool visible) {
    Cursor().visible = visible;
    curs_set(visible ? 1 : 0);
}

void ShowTerminalCursor() {
    const CursorState& cursor = Cursor();
    curs_set(cursor.visible ? 1 : 0);
    if (!cursor.visible) return;
    // The standard screen lies under every window and is never drawn in, so
    // refreshing it only moves the cursor.
    wmove(stdscr, cursor.row, cursor.column);
    wrefresh(stdscr);
}

termios& StartupTerminalSettings() {
    static termios settings{};
    return settings;
}

void ResizeTerminal() {
    struct winsize ws {};
    if (::ioctl(0, TIOCGWINSZ, &ws) != 0) return;
    if (ws.ws_row == 0 || ws.ws_col == 0) return;
    resizeterm(ws.ws_row, ws.ws_col);
    Platform::Log(LOG_INFO, "Resized window to %dx%d", ws.ws_col, ws.ws_row);
    refresh();
}

}  // namespace Tesk
