#include "session/root_window.h"

#include <algorithm>

#include "session/session.h"
#include "ui/key_loop.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/markup.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr const char kLeftFooter[] =
    "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";

}  // namespace

RootWindow::RootWindow(Window* opener, Session& session)
    : Frame(opener, 0, 0, COLS, LINES, ColourBlack, ColourWhite), context_{*this, session, {}} {
    const int leftWidth = COLS / 2;
    const int rightWidth = COLS - leftWidth;
    left_ = std::make_unique<Window>(this, 0, 0, leftWidth, LINES, ColourYellow, ColourBlack);
    right_ = std::make_unique<Window>(this, leftWidth, 0, rightWidth, LINES, ColourDarkGrey,
                                      ColourWhite);
    title_ = std::make_unique<TextArea>(left_.get(), 2, 1, leftWidth - 4, 1, ColourBlack);
    menu_ = std::make_unique<ItemList>(left_.get(), 1, 3, leftWidth - 2, LINES - 6);
    leftFooter_ =
        std::make_unique<TextArea>(left_.get(), 2, LINES - 2, leftWidth - 4, 1, ColourBlack);
    // The status line (the empty-password warning) ends on the row above the
    // footer and grows upwards to show its whole text: into the blank row
    // below the pane first, then the pane gives up rows.
    statusText_ =
        context_.session.emptyPasswordLogin() ? str(StrId::ChangeDefaultPassword) : std::string();
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

    title_->setText(str(StrId::SystemCustomization));
    leftFooter_->setText(kLeftFooter);

    std::vector<std::unique_ptr<MenuEntry>> all = MakeMenuEntries();
    for (auto& entry : all) entry->reload(context_);
    for (auto& entry : all) {
        if (!entry->shown(context_)) continue;
        if (entry->separator()) {
            menu_->emplace<LabelItem>("", false);
        } else {
            LabelItem& item = menu_->emplace<LabelItem>(entry->title(context_), true);
            if (!entry->enabled(context_)) item.setEnabled(false);
        }
        entries_.push_back(std::move(entry));
    }
    menu_->selectByOrdinal(0);
    describe();
}

RootWindow::~RootWindow() = default;

MenuEntry* RootWindow::selectedEntry() {
    const int index = menu_->selectedIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= entries_.size()) return nullptr;
    MenuEntry* entry = entries_[static_cast<std::size_t>(index)].get();
    return entry->separator() ? nullptr : entry;
}

void RootWindow::describe() {
    MenuEntry* entry = selectedEntry();
    if (entry) {
        pane_->setText("{color:white}" + entry->title(context_) + "{/color}\n\n" +
                       entry->pane(context_));
        footer_->setText(entry->footer(context_));
    } else {
        pane_->setText("");
        footer_->setText("");
    }
    status_->setText(statusText_);
    menu_->draw();
    redraw();
}

void RootWindow::open(MenuEntry& entry) {
    entry.open(context_);
    for (auto& e : entries_) e->reload(context_);
    describe();
}

int RootWindow::run() {
    describe();
    return RunKeyLoop(*this, {.allowIdleTimeout = true,
                              .handler = [this](int key) { return onKey(key); },
                              .defaults = [this](int key) { return menu_->moveKey(key); },
                              .afterKey = [this] { describe(); }});
}

KeyResult RootWindow::onKey(int key) {
    MenuEntry* entry = selectedEntry();
    if (key == KeyEscape) return KeyResult::Leave(0);
    if (key == KeyEnter) {
        if (entry) open(*entry);
        return KeyResult::Handled();
    }
    if (entry && entry->key(context_, key)) {
        describe();
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
