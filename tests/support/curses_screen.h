// A curses screen that writes nowhere, for the toolkit's tests, benchmarks and
// fuzzers: newterm on /dev/null as a "linux" console (which can redefine
// colours), in a UTF-8 locale, with the console's colour pairs.
#pragma once

#include <curses.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "ui/terminal.h"

namespace TeskTest {

// Opens the screen on the first call and makes it current; later calls do
// nothing. A size (both sides above 0) is applied when the screen is opened;
// otherwise it has the terminal description's size.
inline void OpenCursesScreen(int lines = 0, int columns = 0) {
    static SCREEN* screen = [lines, columns] {
        std::setlocale(LC_ALL, "C.UTF-8");
        ::unsetenv("LINES");
        ::unsetenv("COLUMNS");
        SCREEN* s = newterm("linux", std::fopen("/dev/null", "w"), std::fopen("/dev/null", "r"));
        set_term(s);
        start_color();
        Tesk::SetupColours();
        if (lines > 0 && columns > 0) resizeterm(lines, columns);
        return s;
    }();
    (void)screen;
}

}  // namespace TeskTest
