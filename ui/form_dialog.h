// A dialog with an item list over its item area and the one key loop: the
// selected item answers its keys first (typing, Space), then the dialog's own
// onKey(), then the defaults (Up/Down move, Enter accepts, Esc cancels).
//
//     FormDialog form(this, {60, 14, 6});
//     form.setTitle("Host Name");
//     form.setFooter(Footer::kOkCancel);
//     auto& name = form.items().emplace<InputItem>("Name:", "host01", 20);
//     auto& ssh = form.items().emplace<CheckItem>("Enable SSH", false);
//     if (Run(form) == 1) apply(name.value(), ssh.checked());
#pragma once

#include "ui/dialog.h"
#include "ui/items.h"
#include "ui/key_loop.h"

namespace Tesk {

class FormDialog : public Dialog {
public:
    FormDialog(Window* opener, DialogSize size);
    FormDialog(Window* opener, int width, int height, int upperHeight)
        : FormDialog(opener, DialogSize{width, height, upperHeight}) {}

    // The list over the whole item area (empty and invisible without one).
    ItemList& items() { return items_; }
    // Whether a logged-in user's idle timeout may end the dialog (default yes).
    void setIdleTimeout(bool allowed) { idleTimeout_ = allowed; }

    // Draws the list and reads keys until a handler answers Leave.
    int run() override;

protected:
    // The dialog's own keys, asked when the selected item ignored the key.
    // The default takes none.
    virtual KeyResult onKey(int key);
    // <Enter> and <Esc> when onKey() ignored them: Leave(1) and Leave(0).
    virtual KeyResult accept();
    virtual KeyResult cancel();
    // Shows the new state after a key answered Redraw: the dialog, then the
    // list, which leaves the terminal cursor in the selected field.
    virtual void refresh();

    // The loop's handlers, for dialogs that run it themselves.
    KeyLoop keyLoop();

private:
    KeyResult defaultKey(int key);

    ItemList items_;
    bool idleTimeout_ = true;
};

}  // namespace Tesk
