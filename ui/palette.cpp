#include "ui/palette.h"

#include "ui/terminal.h"

namespace Tesk {

namespace {

bool g_highContrast = false;

bool IsLight(int colour) {
    return colour == ColourWhite || colour == ColourLightGrey || colour == ColourYellow;
}

}  // namespace

bool HighContrastPalette() {
    return g_highContrast;
}

void SetHighContrastPalette(bool on) {
    g_highContrast = on;
}

ColourPair PaletteColours(int background, int foreground) {
    if (!g_highContrast) return {background, foreground};
    if (background == ColourDarkGrey) background = ColourBlack;
    if (foreground != ColourRed) foreground = IsLight(background) ? ColourBlack : ColourWhite;
    return {background, foreground};
}

attr_t TextAttr(int background, int foreground) {
    ColourPair p = PaletteColours(background, foreground);
    return ColourAttr(p.background, p.foreground);
}

}  // namespace Tesk
