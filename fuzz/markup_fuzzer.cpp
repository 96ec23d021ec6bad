// Lays out and draws arbitrary bytes as markup into a text area of arbitrary
// size. The first four bytes choose the area (width, height, scroll, state);
// the rest is the text.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tests/support/curses_screen.h"
#include "ui/markup.h"
#include "ui/palette.h"
#include "ui/terminal.h"
#include "ui/textarea.h"
#include "ui/window.h"

namespace {

constexpr int kMaxSide = 200;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TeskTest::OpenCursesScreen(kMaxSide + 2, kMaxSide + 2);
    if (size < 4) return 0;
    const int width = data[0] % kMaxSide;  // 0 included: an area without columns
    const int height = data[1] % kMaxSide;
    const int pages = data[2] % 8;
    const std::uint8_t flags = data[3];
    std::string_view text(reinterpret_cast<const char*>(data + 4), size - 4);

    Tesk::VariableMap variables;
    variables["ip"] = [] { return std::string("{color:red}10.0.0.1 {align:right}"); };
    std::string laidOut = Tesk::LayoutMarkup(text, width, variables);
    (void)Tesk::CountLines(laidOut);

    Tesk::SetCannotChangeColours(flags & 1);
    Tesk::SetHighContrastPalette(flags & 2);
    static Tesk::Window parent(0, 0, kMaxSide + 1, kMaxSide + 1, Tesk::ColourYellow,
                               Tesk::ColourBlack);
    Tesk::TextArea area(&parent, 1, 1, width, height, Tesk::ColourDarkGrey);
    area.setScrollHints(flags & 4);
    if (flags & 8) parent.setActive(false);
    area.setText(text);
    for (int i = 0; i < pages; ++i) area.pageDown();
    if (flags & 16) area.appendText(text);
    if (flags & 8) parent.setActive(true);
    return 0;
}
