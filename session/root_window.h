// "System Customization": the menu of a logged-in user, with a description of
// the selected entry on the right. The entries themselves live in
// session/menu/, one file each.
#pragma once

#include <memory>
#include <vector>

#include "host/host_context.h"
#include "session/menu/menu_entry.h"
#include "ui/pane_window.h"

namespace Tesk {

class Session;

class RootWindow : public PaneWindow {
public:
    RootWindow(Window* opener, Session& session);
    ~RootWindow() override;

private:
    PaneText describe(int row) override;
    // The entry's dialog, then the entries read the host again.
    void enter(int row) override;
    bool otherKey(int row, int key) override;

    // The host as the logged-in user reaches it, for every entry.
    HostContext host_;
    MenuContext context_;
    // The entries shown, one per menu row.
    std::vector<std::unique_ptr<MenuEntry>> entries_;
};

}  // namespace Tesk
