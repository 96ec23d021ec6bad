// The keyboard layout of a Linux host through console-setup: the layouts
// offered are those of the installed keyboard data (the "! layout" section
// of /usr/share/X11/xkb/rules/base.lst), shown by their descriptions; the
// one in use is XKBLAYOUT of /etc/default/keyboard. A change rewrites that
// line (and empties XKBVARIANT) atomically, keeping every other line, and is
// applied with "/bin/setupcon -k". Every path resolves against the host
// root, so under a root other than "/" the root's own setupcon (a stand-in)
// runs, never the machine's.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace LinuxHost::Keyboard {

inline constexpr const char kLayoutList[] = "/usr/share/X11/xkb/rules/base.lst";
inline constexpr const char kKeyboardFile[] = "/etc/default/keyboard";
inline constexpr const char kSetupcon[] = "/bin/setupcon";

struct Layout {
    std::string code;         // "de"
    std::string description;  // "German"
};

// The layouts of a rules list's "! layout" section, in its order.
std::vector<Layout> ParseLayoutList(std::string_view text);

// The installed layouts; throws when the list cannot be read.
std::vector<Layout> InstalledLayouts();
// The description of the configured layout (its code when the list does not
// know it); empty when none is configured.
std::string CurrentLayout();
// Writes the layout named by its description; throws for an unknown one and
// when the file cannot be written (it is then as it was).
void WriteLayout(const std::string& description);
// Writes the layout and runs setupcon; when setupcon fails (logged) the file
// is put back as it was and the call throws.
void ApplyLayout(const std::string& description);

}  // namespace LinuxHost::Keyboard
