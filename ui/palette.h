// The renderer's palette: the normal colours, or a high-contrast variant for
// consoles that are hard to read (washed-out monitors, KVM viewers, low-vision
// users). The welcome screen toggles it with <F4>.
#pragma once

#include <curses.h>

namespace Tesk {

// In high contrast every text colour is pushed to the extreme that stands out
// most from its background: black on the light backgrounds (white, light-grey,
// yellow), white on the dark ones (black, dark-grey), and dark-grey panels
// become black. Red stays red so warnings keep their meaning. Inactive windows
// keep their dimmed look, which is drawn without this mapping.
bool HighContrastPalette();
void SetHighContrastPalette(bool on);

// The colours actually used for (background, foreground) under the current
// palette.
struct ColourPair {
    int background;
    int foreground;
};
ColourPair PaletteColours(int background, int foreground);

// The curses attribute for text in (background, foreground) under the current
// palette; what the toolkit uses everywhere instead of ColourAttr directly.
attr_t TextAttr(int background, int foreground);

}  // namespace Tesk
