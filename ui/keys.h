// Key codes and the input wait's event codes.
#pragma once

#include <curses.h>

namespace Tesk {

// Keys are curses key codes; these are the plain bytes the screens test for.
inline constexpr int KeyEnter = 10;
inline constexpr int KeyEscape = 27;
inline constexpr int KeyBackspaceByte = 8;
inline constexpr int KeyTab = 9;

// A character beyond ASCII arrives as kCharKey plus its code point, above
// every curses key code (which it would otherwise meet from U+0101 on). ASCII
// characters are their own key codes.
inline constexpr int kCharKey = 0x1000000;
inline constexpr int CharKey(char32_t codePoint) {
    return codePoint < 0x80 ? static_cast<int>(codePoint) : kCharKey + static_cast<int>(codePoint);
}
// The character a key types, or 0 when it is a curses key code or an event.
inline constexpr char32_t KeyChar(int key) {
    if (key >= 0 && key < 0x80) return static_cast<char32_t>(key);
    if (key >= kCharKey && key <= kCharKey + 0x10FFFF) return static_cast<char32_t>(key - kCharKey);
    return 0;
}

// Results of the input wait below zero: events, never keys.
enum InputEvent : int {
    EventNone = -1,       // poll failure, curses ERR, unknown pipe byte, nothing readable
    EventTimeout = -2,    // the wait's time limit passed
    EventSmartCard = -3,  // SIGUSR1
    EventRestart = -4,    // SIGUSR2
    EventResize = -5,     // SIGWINCH
    EventQuit = -6,       // SIGINT, SIGQUIT, SIGTERM
    EventWatch = -7,      // the watched descriptor (SetWatchedDescriptor) is readable
};

}  // namespace Tesk
