// A full-screen window of two panes: on the left a title, a list of rows and a
// footer; on the right the selected row's description and its footer, with an
// optional status text above that footer. The customization menu, the
// management network window, the network restore window and the
// troubleshooting window are all one: a subclass names its rows and answers
// what each row shows and does; the one key loop is here.
//
//     class RestoreWindow : public PaneWindow {
//         RestoreWindow(Window* opener) : PaneWindow(opener, kLeftFooter) {
//             setTitle(str(StrId::NetworkRestoreOptions));
//             addRow(str(StrId::RestoreNetworkSettings));
//             ...
//         }
//         PaneText describe(int row) override { return {..., ...}; }
//         void enter(int row) override { ... }
//     };
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/dialog.h"
#include "ui/items.h"
#include "ui/key_result.h"
#include "ui/textarea.h"

namespace Tesk {

// What the right pane shows for a row: the body (markup) and the footer.
struct PaneText {
    std::string body;
    std::string footer;
};

// What a row shows and does, given with the row: what the pane says while it
// is selected, what <Enter> opens, and any other key it takes (true when it
// used the key). A window whose rows say it all needs no hooks of its own.
struct PaneRow {
    std::function<PaneText()> describe;
    std::function<void()> enter = nullptr;
    std::function<bool(int key)> key = nullptr;
};

class PaneWindow : public Frame {
public:
    // status: a text kept above the right footer for the window's whole life
    // (it grows upwards to show all of it, taking rows from the pane).
    // widestRow: the columns of the longest row text; the left pane takes half
    // the screen, or more where a row would not fit in that half (the right
    // pane keeps at least 36 columns).
    PaneWindow(Window* opener, std::string leftFooter, std::string status = {}, int widestRow = 0);
    ~PaneWindow() override;

    // The key loop: Up/Down move the selection, <Enter> opens the row, the
    // pane scrolls, <Esc> leaves when leave() agrees. Every key describes the
    // selected row again. Returns 0.
    int run() override;

protected:
    void setTitle(std::string title);
    // Appends a row; a row that is not selectable is an empty separator.
    // Returns its index.
    int addRow(std::string text, bool selectable = true);
    // Appends a row that carries what it shows and does.
    int addRow(std::string text, PaneRow row);
    void setRowText(int row, std::string text);
    // A disabled row is skipped by the selection and drawn in dark-grey.
    void setRowEnabled(int row, bool enabled);
    int rowCount() const;
    // The selected row, -1 when none can be selected.
    int selectedRow() const;
    // The first selectable, enabled row from row on (row itself when it can
    // be selected), else the nearest one above.
    void selectRow(int row);
    // Fills the pane and its footer for the selected row and draws.
    void refreshPane();

    // What the pane shows for a row (never asked for -1); by default what the
    // row was given with.
    virtual PaneText describe(int row);
    // <Enter> on a row; the pane is described again after it. By default the
    // row's own action.
    virtual void enter(int row);
    // Any other key the window does not use; true when the row used it (the
    // pane is then described again). By default the row's own key handler.
    virtual bool otherKey(int row, int key);
    // <Esc>: true leaves the window.
    virtual bool leave() { return true; }

private:
    KeyResult onKey(int key);

    std::unique_ptr<Window> left_;
    std::unique_ptr<Window> right_;
    std::unique_ptr<TextArea> title_;
    std::unique_ptr<ItemList> list_;
    std::unique_ptr<TextArea> leftFooter_;
    std::unique_ptr<TextArea> pane_;
    std::unique_ptr<TextArea> status_;
    std::string statusText_;
    std::unique_ptr<TextArea> footer_;
    // What each row was given with (empty for rows added by text alone).
    std::vector<PaneRow> rows_;
};

}  // namespace Tesk
