// The customization menu's entries in their order. A new entry is a new file
// defining its factory, declared and listed here.
#include <memory>
#include <vector>

#include "session/menu/menu_entry.h"

namespace Tesk {

std::unique_ptr<MenuEntry> MakePasswordEntry();
std::unique_ptr<MenuEntry> MakeLockdownEntry();
std::unique_ptr<MenuEntry> MakeManagementNetworkEntry();
std::unique_ptr<MenuEntry> MakeRestartNetworkEntry();
std::unique_ptr<MenuEntry> MakeTestNetworkEntry();
std::unique_ptr<MenuEntry> MakeNetworkRestoreEntry();
std::unique_ptr<MenuEntry> MakeKeyboardEntry();
std::unique_ptr<MenuEntry> MakeTroubleshootingEntry();
std::unique_ptr<MenuEntry> MakeLogsEntry();
std::unique_ptr<MenuEntry> MakeSupportEntry();
std::unique_ptr<MenuEntry> MakeResetEntry();
std::unique_ptr<MenuEntry> MakeExtensionsEntry();

namespace {
std::unique_ptr<MenuEntry> Separator() {
    return std::make_unique<MenuSeparator>();
}
}  // namespace

std::vector<std::unique_ptr<MenuEntry>> MakeMenuEntries() {
    constexpr MenuEntryFactory kOrder[] = {
        MakePasswordEntry,
        MakeLockdownEntry,
        Separator,
        MakeManagementNetworkEntry,
        MakeRestartNetworkEntry,
        MakeTestNetworkEntry,
        MakeNetworkRestoreEntry,
        Separator,
        MakeKeyboardEntry,
        MakeTroubleshootingEntry,
        Separator,
        MakeLogsEntry,
        Separator,
        MakeSupportEntry,
        Separator,
        MakeResetEntry,
        MakeExtensionsEntry,
    };
    std::vector<std::unique_ptr<MenuEntry>> entries;
    for (MenuEntryFactory make : kOrder) entries.push_back(make());
    return entries;
}

}  // namespace Tesk
