// One entry of the customization menu: its name, whether it is shown and can
// be chosen, the description and footer of the right pane, and what <Enter>
// (or another key) does. Each entry lives in its own file; menu_order.cpp
// lists them in menu order.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/host_context.h"
#include "hostctl/network.h"
#include "hostctl/offers.h"

namespace Tesk {

class Frame;
class Session;

// What an entry may use: the menu (the window its dialogs open over, and the
// string table), the session of the logged-in user, the host as that user
// reaches it, and host facts that several entries share, read once when the
// menu opens.
struct MenuContext {
    Frame& menu;
    Session& session;
    const HostContext& host;
    std::optional<bool> managementUsable;
    // The management interface the entries ask about (session/menu/management.h).
    std::unique_ptr<HostCtl::Network::ZrkNic> managementNic;
};

class MenuEntry {
public:
    virtual ~MenuEntry() = default;

    // The name in the list and the heading of the pane; empty for a separator.
    virtual std::string title(MenuContext& context) const = 0;
    // A separator is an empty row that the selection skips.
    virtual bool separator() const { return false; }
    // The host feature the entry needs. Where the host does not offer it, the
    // menu shows the entry greyed with the host's reason in its pane, and
    // <Enter> does nothing (MakeNotOfferedEntry); shown() is not asked then.
    virtual std::optional<HostCtl::Feature> feature() const { return std::nullopt; }
    // Whether its row is drawn greyed (a row that is not offered).
    virtual bool greyed() const { return false; }
    // Whether the entry is in the menu at all; asked once, when the menu opens.
    virtual bool shown(MenuContext&) const { return true; }
    // Whether it can be selected; asked once, when the menu opens (after the
    // first reload).
    virtual bool enabled(MenuContext&) { return true; }
    // Reads what the entry shows from the host: when the menu opens and
    // after any entry's dialog has closed.
    virtual void reload(MenuContext&) {}
    // The pane's text below the heading, and the pane's footer.
    virtual std::string pane(MenuContext& context) = 0;
    virtual std::string footer(MenuContext& context) = 0;
    // <Enter> on the entry.
    virtual void open(MenuContext&) {}
    // Any other key the menu does not use while the entry is selected; true
    // when the entry used it.
    virtual bool key(MenuContext&, int /*key*/) { return false; }
};

// The empty row between groups of entries.
class MenuSeparator : public MenuEntry {
public:
    std::string title(MenuContext&) const override { return {}; }
    bool separator() const override { return true; }
    std::string pane(MenuContext&) override { return {}; }
    std::string footer(MenuContext&) override { return {}; }
};

// An entry whose name, pane and footer are fixed texts: most entries start
// as one and add what they open.
class FixedTextEntry : public MenuEntry {
public:
    FixedTextEntry(std::uint32_t titleId, std::uint32_t paneId, const char* footer)
        : titleId_(titleId), paneId_(paneId), footer_(footer) {}
    std::string title(MenuContext& context) const override;
    std::string pane(MenuContext& context) override;
    std::string footer(MenuContext&) override { return footer_; }

private:
    std::uint32_t titleId_;
    std::uint32_t paneId_;
    const char* footer_;
};

using MenuEntryFactory = std::unique_ptr<MenuEntry> (*)();

// entry as the menu shows it where the host does not offer its feature: its
// title, greyed, and the reason as its pane.
std::unique_ptr<MenuEntry> MakeNotOfferedEntry(std::unique_ptr<MenuEntry> entry,
                                               std::string reason);

// Every entry in menu order (separators included).
std::vector<std::unique_ptr<MenuEntry>> MakeMenuEntries();

}  // namespace Tesk
