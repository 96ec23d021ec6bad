// "System Customization": the menu of a logged-in user, with a description of
// the selected entry on the right. The entries themselves live in
// session/menu/, one file each.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/items.h"
#include "ui/key_result.h"
#include "ui/textarea.h"

namespace Tesk {

class Session;

class RootWindow : public Frame {
public:
    RootWindow(Window* opener, Session& session);
    ~RootWindow() override;
    // The key loop; returns when the user presses <Esc>.
    int run() override;

private:
    // The selected entry; null on a separator or when nothing is selected.
    MenuEntry* selectedEntry();
    // Fills the right pane and the footers for the selected entry.
    void describe();
    // <Enter>: the entry's dialog, then the entries read the host again.
    void open(MenuEntry& entry);
    // The menu's own keys: <Esc>, <Enter>, the entry's keys, scrolling.
    KeyResult onKey(int key);

    MenuContext context_;
    std::unique_ptr<Window> left_;
    std::unique_ptr<Window> right_;
    std::unique_ptr<TextArea> title_;
    std::unique_ptr<ItemList> menu_;
    std::unique_ptr<TextArea> leftFooter_;
    std::unique_ptr<TextArea> pane_;
    std::unique_ptr<TextArea> status_;
    // What the status line says for the whole session.
    std::string statusText_;
    std::unique_ptr<TextArea> footer_;
    // The entries shown, one per menu row.
    std::vector<std::unique_ptr<MenuEntry>> entries_;
};

}  // namespace Tesk
