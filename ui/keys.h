// Key codes and the input wait's event codes.
#pragma once

#include <curses.h>

namespace Tesk {

// Keys are curses key codes; these are the plain bytes the screens test for.
inline constexpr int KeyEnter = 10;
inline constexpr int KeyEscape = 27;
inline constexpr int KeyBackspaceByte = 8;
inline constexpr int KeyTab = 9;

// Results of the input wait below zero: events, never keys.
enum InputEvent : int {
    EventNone = -1,       // poll failure, curses ERR, unknown pipe byte, nothing readable
    EventTimeout = -2,    // the wait's time limit passed
    EventSmartCard = -3,  // SIGUSR1
    EventRestart = -4,    // SIGUSR2
    EventResize = -5,     // SIGWINCH
    EventQuit = -6,       // SIGINT, SIGQUIT, SIGTERM
};

}  // namespace Tesk
