#include "ui/pane_window.h"

#include <algorithm>

#include "ui/key_loop.h"
#include "ui/keys.h"
#include "ui/markup.h"

namespace Tesk {

namespace {

// A row's text has the list's width less its margins and scroll column.
constexpr int kRowMargins = 5;
constexpr int kNarrowestRightPane = 36;

}  // namespace

PaneWindow::PaneWindow(Window* opener, std::string leftFooter, std::string status, int widestRow)
    : Frame(opener, 0, 0, COLS, LINES, ColourBlack, ColourWhite), statusText_(std::move(status)) {
    const int leftWidth =
        std::max(COLS / 2, std::min(widestRow + kRowMargins, COLS - kNarrowestRightPane));
    const int rightWidth = COLS - leftWidth;
    left_ = std::make_unique<Window>(this, 0, 0, leftWidth, LINES, ColourYellow, ColourBlack);
    right_ = std::make_unique<Window>(this, leftWidth, 0, rightWidth, LINES, ColourDarkGrey,
                                      ColourWhite);
    title_ = std::make_unique<TextArea>(left_.get(), 2, 1, leftWidth - 4, 1, ColourBlack);
    list_ = std::make_unique<ItemList>(left_.get(), 1, 3, leftWidth - 2, LINES - 6);
    leftFooter_ =
        std::make_unique<TextArea>(left_.get(), 2, LINES - 2, leftWidth - 4, 1, ColourBlack);
    leftFooter_->setText(std::move(leftFooter));
    // The status line ends on the row above the footer and grows upwards to
    // show its whole text: into the blank row below the pane first, then the
    // pane gives up rows.
    const int statusLines =
        std::max(1, CountLines(LayoutMarkup(statusText_, std::max(rightWidth - 4, 0))));
    const int paneHeight = std::min(LINES - 5, LINES - 3 - statusLines);
    pane_ =
        std::make_unique<TextArea>(right_.get(), 2, 1, rightWidth - 4, paneHeight, ColourLightGrey);
    pane_->setScrollHints(true);
    status_ = std::make_unique<TextArea>(right_.get(), 2, LINES - 2 - statusLines, rightWidth - 4,
                                         statusLines, ColourYellow);
    footer_ =
        std::make_unique<TextArea>(right_.get(), 2, LINES - 2, rightWidth - 4, 1, ColourWhite);
}

PaneWindow::~PaneWindow() = default;

void PaneWindow::setTitle(std::string title) {
    title_->setText(std::move(title));
}

int PaneWindow::addRow(std::string text, bool selectable) {
    list_->emplace<LabelItem>(selectable ? std::move(text) : std::string(), selectable);
    rows_.emplace_back();
    return static_cast<int>(list_->size()) - 1;
}

int PaneWindow::addRow(std::string text, PaneRow row) {
    const int index = addRow(std::move(text), true);
    rows_.back() = std::move(row);
    return index;
}

PaneText PaneWindow::describe(int row) {
    const PaneRow& r = rows_[static_cast<std::size_t>(row)];
    return r.describe ? r.describe() : PaneText{};
}

void PaneWindow::enter(int row) {
    const PaneRow& r = rows_[static_cast<std::size_t>(row)];
    if (r.enter) r.enter();
}

bool PaneWindow::otherKey(int row, int key) {
    const PaneRow& r = rows_[static_cast<std::size_t>(row)];
    return r.key && r.key(key);
}

void PaneWindow::setRowText(int row, std::string text) {
    if (row < 0 || row >= rowCount()) return;
    if (auto* label = dynamic_cast<LabelItem*>(&list_->at(static_cast<std::size_t>(row))))
        label->setLabel(std::move(text));
}

void PaneWindow::setRowEnabled(int row, bool enabled) {
    if (row < 0 || row >= rowCount()) return;
    list_->at(static_cast<std::size_t>(row)).setEnabled(enabled);
    // The selection never rests on a row that cannot be chosen.
    if (!enabled && row == list_->selectedIndex()) selectRow(row);
}

int PaneWindow::rowCount() const {
    return static_cast<int>(list_->size());
}

int PaneWindow::selectedRow() const {
    const int index = list_->selectedIndex();
    if (index < 0 || index >= rowCount()) return -1;
    const Item& item = list_->at(static_cast<std::size_t>(index));
    return item.selectable() && item.enabled() ? index : -1;
}

void PaneWindow::selectRow(int row) {
    auto usable = [this](int i) {
        const Item& item = list_->at(static_cast<std::size_t>(i));
        return item.selectable() && item.enabled();
    };
    int target = -1;
    for (int i = std::max(row, 0); i < rowCount() && target < 0; ++i)
        if (usable(i)) target = i;
    for (int i = std::min(row, rowCount() - 1); i >= 0 && target < 0; --i)
        if (usable(i)) target = i;
    if (target < 0) return;
    // The list selects by ordinal among the rows that can be selected.
    int ordinal = 0;
    for (int i = 0; i < target; ++i)
        if (list_->at(static_cast<std::size_t>(i)).selectable()) ++ordinal;
    list_->selectByOrdinal(ordinal);
}

void PaneWindow::refreshPane() {
    const int row = selectedRow();
    if (row >= 0) {
        PaneText text = describe(row);
        pane_->setText(std::move(text.body));
        footer_->setText(std::move(text.footer));
    } else {
        pane_->setText("");
        footer_->setText("");
    }
    status_->setText(statusText_);
    list_->draw();
    redraw();
}

int PaneWindow::run() {
    if (list_->selectedIndex() < 0) selectRow(0);
    refreshPane();
    return RunKeyLoop(*this, {.allowIdleTimeout = true,
                              .handler = [this](int key) { return onKey(key); },
                              .defaults = [this](int key) { return list_->moveKey(key); },
                              .afterKey = [this] { refreshPane(); }});
}

KeyResult PaneWindow::onKey(int key) {
    const int row = selectedRow();
    if (key == KeyEscape) return leave() ? KeyResult::Leave(0) : KeyResult::Handled();
    if (key == KeyEnter) {
        if (row >= 0) {
            enter(row);
            refreshPane();
        }
        return KeyResult::Handled();
    }
    if (row >= 0 && otherKey(row, key)) {
        refreshPane();
        return KeyResult::Handled();
    }
    // The pane scrolls without being described again (which would put it
    // back at its top).
    if (pane_->handleScrollKey(key)) {
        redraw();
        return KeyResult::Handled();
    }
    return KeyResult::Ignored();
}

}  // namespace Tesk
