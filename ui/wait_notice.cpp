// The wait notice: a box drawn over the screen, with a copy of what it covers
// kept to put back.
#include "ui/wait_notice.h"

#include <curses.h>

#include <algorithm>
#include <cstring>

#include "platform/waiting.h"
#include "ui/palette.h"
#include "ui/progress_dialog.h"
#include "ui/string_ids.h"
#include "ui/strings.h"
#include "ui/window.h"

namespace Tesk {

namespace {

WINDOW* g_notice = nullptr;
WINDOW* g_under = nullptr;  // the screen's cells the notice covers

}  // namespace

void ShowWaitNotice(bool waiting) {
    if (waiting) {
        if (g_notice || stdscr == nullptr || isendwin()) return;
        if (dynamic_cast<ProgressDialog*>(CurrentWindow())) return;
        StringFactory* strings = StringFactory::GetFactory("en_US");
        const char* text = strings ? strings->get(StrId::PleaseWait) : "";
        const int width = std::min(static_cast<int>(std::strlen(text)) + 6, COLS);
        const int height = std::min(3, LINES);
        if (width < 3 || height < 3) return;
        const int y = (LINES - height) / 2, x = (COLS - width) / 2;
        g_under = newwin(height, width, y, x);
        g_notice = newwin(height, width, y, x);
        if (!g_under || !g_notice) {
            if (g_under) delwin(g_under);
            if (g_notice) delwin(g_notice);
            g_under = g_notice = nullptr;
            return;
        }
        copywin(curscr, g_under, y, x, 0, 0, height - 1, width - 1, FALSE);
        wbkgd(g_notice, TextAttr(ColourDarkGrey, ColourWhite));
        box(g_notice, 0, 0);
        mvwaddnstr(g_notice, 1, 3, text, width - 6);
        wrefresh(g_notice);
        return;
    }
    if (!g_notice) return;
    delwin(g_notice);
    g_notice = nullptr;
    if (!isendwin()) {
        touchwin(g_under);
        wrefresh(g_under);
    }
    delwin(g_under);
    g_under = nullptr;
}

void InstallWaitNotice() {
    Platform::SetSlowWaitNotifier(&ShowWaitNotice);
}

}  // namespace Tesk
