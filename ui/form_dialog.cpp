#include "ui/form_dialog.h"

#include "ui/keys.h"

namespace Tesk {

namespace {

// The item area's parent and size, or nothing at all without an item area.
Window* ListParent(Dialog& d) {
    return d.itemArea() ? d.itemArea() : &d.lowerBand();
}
int ListWidth(Dialog& d) {
    return d.itemArea() ? d.itemArea()->width() : 0;
}
int ListHeight(Dialog& d) {
    return d.itemArea() ? d.itemArea()->height() : 0;
}

}  // namespace

FormDialog::FormDialog(Window* opener, DialogSize size)
    : Dialog(opener, size), items_(ListParent(*this), 0, 0, ListWidth(*this), ListHeight(*this)) {}

int FormDialog::run() {
    refresh();
    return RunKeyLoop(*this, keyLoop());
}

KeyLoop FormDialog::keyLoop() {
    return {.allowIdleTimeout = idleTimeout_,
            .focused = [this](int key) { return items_.selectedKey(key); },
            .handler = [this](int key) { return onKey(key); },
            .defaults = [this](int key) { return defaultKey(key); },
            .afterKey = [this] { refresh(); }};
}

KeyResult FormDialog::onKey(int) {
    return KeyResult::Ignored();
}

KeyResult FormDialog::accept() {
    return KeyResult::Leave(1);
}

KeyResult FormDialog::cancel() {
    return KeyResult::Leave(0);
}

void FormDialog::refresh() {
    redraw();
    items_.draw();
}

KeyResult FormDialog::defaultKey(int key) {
    switch (key) {
        case KeyEnter:
            return accept();
        case KeyEscape:
            return cancel();
        default:
            return items_.moveKey(key);
    }
}

}  // namespace Tesk
