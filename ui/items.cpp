#include "ui/items.h"

#include <string.h>

#include <algorithm>

#include "ui/keys.h"
#include "ui/markup.h"
#include "ui/utf8.h"

namespace Tesk {

// Item ------------------------------------------------------------------

void Item::setSelected(bool selected) {
    if (selected == selected_) return;
    selected_ = selected;
    selectionChanged();
}

KeyResult Item::handleKey(int) {
    return KeyResult::Ignored();
}

void Item::setEnabled(bool enabled) {
    enabled_ = enabled;
    foreground_ = enabled && whyUnavailable_.empty() ? ColourBlack : ColourDarkGrey;
}

void Item::setUnavailable(std::string reason) {
    whyUnavailable_ = std::move(reason);
    setEnabled(enabled_);
}

LabelItem::LabelItem(std::string label, bool selectable)
    : Item(selectable), label_(std::move(label)) {
    text_ = label_;
}

void LabelItem::setLabel(std::string label) {
    label_ = std::move(label);
    rebuild();
}

CheckItem::CheckItem(std::string label, bool checked, int indent)
    : LabelItem(std::move(label), true), checked_(checked), indent_(std::max(indent, 0)) {
    rebuild();
}

void CheckItem::setChecked(bool checked) {
    checked_ = checked;
    rebuild();
}

KeyResult CheckItem::handleKey(int key) {
    if (key != ' ') return KeyResult::Ignored();
    toggle();
    return KeyResult::Redraw();
}

void CheckItem::rebuild() {
    text_.assign(static_cast<std::size_t>(indent_), ' ');
    text_ += checked_ ? "[X] " : "[ ] ";
    text_ += label_;
}

// RadioGroup ------------------------------------------------------------

void RadioGroup::join(RadioItem& item) {
    items_.push_back(&item);
    if (item.chosen() || items_.size() == 1) choose(item);
}

void RadioGroup::choose(RadioItem& item) {
    for (RadioItem* member : items_) member->mark(member == &item);
}

RadioItem* RadioGroup::chosen() const {
    for (RadioItem* member : items_)
        if (member->chosen()) return member;
    return nullptr;
}

int RadioGroup::chosenIndex() const {
    for (std::size_t i = 0; i < items_.size(); ++i)
        if (items_[i]->chosen()) return static_cast<int>(i);
    return -1;
}

// RadioItem -------------------------------------------------------------

RadioItem::RadioItem(std::string label, bool chosen, RadioGroup* group)
    : Item(true), label_(std::move(label)), chosen_(chosen), group_(group) {
    rebuild();
    if (group_) group_->join(*this);
}

void RadioItem::setChosen(bool chosen) {
    if (!group_) {
        mark(chosen);
    } else if (chosen) {
        group_->choose(*this);
    }
}

void RadioItem::mark(bool chosen) {
    chosen_ = chosen;
    rebuild();
}

KeyResult RadioItem::handleKey(int key) {
    if (key != ' ') return KeyResult::Ignored();
    toggle();
    return KeyResult::Redraw();
}

void RadioItem::setLabel(std::string label) {
    label_ = std::move(label);
    rebuild();
}

void RadioItem::rebuild() {
    text_ = (chosen_ ? "(o) " : "( ) ") + label_;
}

// InputItem -------------------------------------------------------------

namespace {

// One character of a field's value: where its bytes are and how many columns
// it takes on the screen (a value set by a screen may hold anything; what is
// not printable shows as one column, as the markup shows it; masked, every
// character is one "*").
struct FieldChar {
    std::size_t at;
    std::size_t length;
    int columns;
};

std::vector<FieldChar> FieldChars(std::string_view value, bool masked) {
    std::vector<FieldChar> chars;
    for (std::size_t at = 0; at < value.size();) {
        const Utf8::Char c = Utf8::Decode(value, at);
        int columns = c.valid ? Utf8::Columns(c.codePoint) : 1;
        if (masked || columns < 0) columns = 1;
        chars.push_back({at, c.length, columns});
        at += c.length;
    }
    return chars;
}

// Columns of the characters [from, to).
int ColumnsBetween(const std::vector<FieldChar>& chars, int from, int to) {
    int columns = 0;
    for (int i = std::max(from, 0); i < to && i < static_cast<int>(chars.size()); ++i)
        columns += chars[static_cast<std::size_t>(i)].columns;
    return columns;
}

}  // namespace

InputItem::InputItem(std::string label, std::string value, int fieldWidth)
    : Item(true), label_(std::move(label)), value_(std::move(value)), fieldWidth_(fieldWidth) {
    rebuild();
}

int InputItem::fieldWidth() const {
    int width = fieldWidth_ < 0 ? listWidth() / 2 - 1 : fieldWidth_;
    return std::max(width, 0);
}

std::size_t InputItem::length() const {
    return Utf8::CharCount(value_);
}

void InputItem::setValue(std::string value) {
    value_ = std::move(value);
    cursor_ = 0;
    offset_ = 0;
    rebuild();
}

void InputItem::setLabel(std::string label) {
    label_ = std::move(label);
    rebuild();
}

void InputItem::wipe() {
    if (!value_.empty()) ::explicit_bzero(value_.data(), value_.size());
    setValue(std::string());
}

void InputItem::setMasked(bool masked) {
    masked_ = masked;
    rebuild();
}

void InputItem::setLightHighlight(bool light) {
    lightHighlight_ = light;
    rebuild();
}

void InputItem::setSelected(bool selected) {
    Item::setSelected(selected);
    rebuild();
}

void InputItem::draw(TextArea& row) {
    rebuild();
    row.setText(text_);
}

int InputItem::fieldColumn() const {
    const int labelColumns = Utf8::TextColumns(label_);
    const int gap = std::max(0, listWidth() - 5 - fieldWidth() - labelColumns);
    return labelColumns + gap + 3;
}

int InputItem::cursorColumn() const {
    const int width = fieldWidth();
    const int inField = ColumnsBetween(FieldChars(value_, masked_), offset_, cursor_);
    return fieldColumn() + std::clamp(inField, 0, width);
}

void InputItem::rebuild() {
    const int width = fieldWidth();
    const int labelColumns = Utf8::TextColumns(label_);
    const int gap = std::max(0, listWidth() - 5 - width - labelColumns);
    // The characters from the view offset that fit the field; a masked field
    // shows one "*" (one column) per character.
    const std::vector<FieldChar> chars = FieldChars(value_, masked_);
    std::string visible;
    int used = 0;
    for (std::size_t i = static_cast<std::size_t>(std::max(offset_, 0)); i < chars.size(); ++i) {
        const int columns = chars[i].columns;
        if (used + columns > width) break;
        if (masked_)
            visible.push_back('*');
        else
            visible.append(value_, chars[i].at, chars[i].length);
        used += columns;
    }

    text_ = label_;
    text_.append(static_cast<std::size_t>(gap), ' ');
    text_ += " [ ";
    if (selected())
        text_ += lightHighlight_ ? "{bgcolor:white}{color:black}" : "{bgcolor:black}{color:white}";
    text_ += EscapeMarkup(visible);
    text_.append(static_cast<std::size_t>(width - used), ' ');
    if (selected()) text_ += "{/color}{/bgcolor}";
    text_ += " ]";
}

void InputItem::keepCursorInView() {
    const int width = fieldWidth();
    if (width <= 0) return;
    // The caret needs a column of its own after the characters before it.
    // One pass, however long the value (a host's list can be megabytes).
    const std::vector<FieldChar> chars = FieldChars(value_, masked_);
    offset_ = std::max(offset_, 0);
    int columns = ColumnsBetween(chars, offset_, cursor_);
    while (offset_ < cursor_ && offset_ < static_cast<int>(chars.size()) && columns >= width)
        columns -= chars[static_cast<std::size_t>(offset_++)].columns;
}

bool InputItem::accepts(char32_t c) const {
    if (filter_ && !filter_(c)) return false;
    // A fresh value is replaced, so one character always fits.
    return fresh_ || maxLength_ == 0 || length() < maxLength_;
}

void InputItem::eraseChar(int index) {
    const std::size_t at = Utf8::ByteOffset(value_, static_cast<std::size_t>(index));
    if (at >= value_.size()) return;
    value_.erase(at, Utf8::Decode(value_, at).length);
}

KeyResult InputItem::handleKey(int key) {
    const int count = static_cast<int>(length());
    switch (key) {
        case KEY_HOME:
            cursor_ = 0;
            offset_ = 0;
            fresh_ = false;
            break;
        case KEY_END:
            if (count > 0) cursor_ = count;
            keepCursorInView();
            fresh_ = false;
            break;
        case KEY_LEFT:
            if (cursor_ > 0) {
                if (cursor_ == offset_) --offset_;
                --cursor_;
            }
            fresh_ = false;
            break;
        case KEY_RIGHT:
            if (cursor_ < count) ++cursor_;
            keepCursorInView();
            fresh_ = false;
            break;
        case KeyBackspaceByte:
        case KEY_BACKSPACE:
            if (fresh_) {
                value_.clear();
                cursor_ = offset_ = 0;
                fresh_ = false;
            } else if (cursor_ > 0) {
                eraseChar(cursor_ - 1);
                --cursor_;
                if (cursor_ < offset_) {
                    // Deleting past the left edge of the view shows the whole
                    // value from its start again, cursor at the end.
                    offset_ = 0;
                    cursor_ = static_cast<int>(length());
                }
            }
            break;
        case KEY_DC:
            if (fresh_) {
                value_.clear();
                cursor_ = offset_ = 0;
                fresh_ = false;
            } else if (cursor_ < count) {
                eraseChar(cursor_);
            }
            break;
        default: {
            const char32_t c = KeyChar(key);
            if (c == 0 || !Utf8::Typeable(c)) return KeyResult::Ignored();
            if (!accepts(c)) return KeyResult::Handled();
            const std::string bytes = Utf8::Encode(c);
            if (fresh_) {
                value_ = bytes;
                cursor_ = 1;
                offset_ = 0;
                fresh_ = false;
            } else {
                value_.insert(Utf8::ByteOffset(value_, static_cast<std::size_t>(cursor_)), bytes);
                ++cursor_;
            }
            keepCursorInView();
            break;
        }
    }
    rebuild();
    return KeyResult::Redraw();
}

// ItemList --------------------------------------------------------------

ItemList::ItemList(Window* parent, int x, int y, int width, int height)
    : Window(parent, x, y, width, height, -1, -1), rows_(std::max(height, 0)) {
    listArea_ = std::make_unique<Window>(this, 0, 0, width - 1, height, -1, -1);
    scrollColumn_ = std::make_unique<Window>(this, width - 1, 0, 1, height, -1, -1);
    for (int i = 0; i < rows_; ++i) {
        rowWindows_.push_back(
            std::make_unique<Window>(listArea_.get(), 0, i, width - 1, 1, -1, -1));
        rowTexts_.push_back(
            std::make_unique<TextArea>(rowWindows_.back().get(), 1, 0, width - 3, 1, -1, -1));
    }
}

ItemList::~ItemList() = default;

Item& ItemList::add(std::unique_ptr<Item> item) {
    item->setListWidth(width() - 3);
    items_.push_back(std::move(item));
    return *items_.back();
}

Item* ItemList::selected() {
    if (selected_ < 0 || selected_ >= static_cast<int>(items_.size())) return nullptr;
    return items_[static_cast<std::size_t>(selected_)].get();
}

bool ItemList::selectable(int index) const {
    const Item& item = *items_[static_cast<std::size_t>(index)];
    return item.selectable() && item.enabled();
}

void ItemList::select(int index) {
    selected_ = index;
    if (index < top_) top_ = index;
    if (index >= top_ + rows_) top_ = index - rows_ + 1;
    if (top_ < 0) top_ = 0;
}

void ItemList::selectByOrdinal(int n) {
    int ordinal = -1;
    for (int i = 0; i < static_cast<int>(items_.size()); ++i) {
        if (!items_[static_cast<std::size_t>(i)]->selectable()) continue;
        if (++ordinal == n) {
            ordinal_ = n;
            select(i);
            return;
        }
    }
}

bool ItemList::moveDown() {
    int ordinal = ordinal_;
    for (int i = selected_ + 1; i < static_cast<int>(items_.size()); ++i) {
        if (items_[static_cast<std::size_t>(i)]->selectable()) ++ordinal;
        if (selectable(i)) {
            ordinal_ = ordinal;
            select(i);
            return true;
        }
    }
    return false;
}

bool ItemList::moveUp() {
    int ordinal = ordinal_;
    for (int i = selected_ - 1; i >= 0; --i) {
        if (items_[static_cast<std::size_t>(i)]->selectable()) --ordinal;
        if (selectable(i)) {
            ordinal_ = ordinal;
            select(i);
            return true;
        }
    }
    return false;
}

KeyResult ItemList::moveKey(int key) {
    if (key != KEY_UP && key != KEY_DOWN) return KeyResult::Ignored();
    const bool moved = key == KEY_UP ? moveUp() : moveDown();
    return moved ? KeyResult::Redraw() : KeyResult::Handled();
}

KeyResult ItemList::selectedKey(int key) {
    Item* item = selected();
    return item && item->whyUnavailable().empty() ? item->handleKey(key) : KeyResult::Ignored();
}

void ItemList::draw() {
    // A list shown before anything was selected starts on its first choice.
    if (selected_ < 0) moveDown();
    if (listArea_->curses()) werase(listArea_->curses());
    // Items scrolled out of view learn that they lost the selection too.
    for (std::size_t i = 0; i < items_.size(); ++i)
        items_[i]->setSelected(static_cast<int>(i) == selected_);
    for (int row = 0; row < rows_; ++row) {
        TextArea& text = *rowTexts_[static_cast<std::size_t>(row)];
        Window& rowWindow = *rowWindows_[static_cast<std::size_t>(row)];
        const int index = top_ + row;
        if (index >= static_cast<int>(items_.size())) {
            rowWindow.setColours(listArea_->background(), listArea_->foreground());
            text.setColours(listArea_->background(), listArea_->foreground());
            text.setText("");
            continue;
        }
        Item& item = *items_[static_cast<std::size_t>(index)];
        const bool isSelected = index == selected_;
        const int bg = isSelected ? ColourBlack : item.background();
        const int fg = isSelected ? ColourWhite : item.foreground();
        rowWindow.setColours(bg, fg);
        text.setColours(bg, fg);
        if (!isSelected) item.draw(text);
    }
    drawScrollBar();
    listArea_->redraw();
    if (Item* item = selected(); item && selectedRow() >= 0 && selectedRow() < rows_) {
        item->draw(*rowTexts_[static_cast<std::size_t>(selectedRow())]);
    }
    redraw();
    placeCursor();
}

void ItemList::drawScrollBar() {
    WINDOW* column = scrollColumn_->curses();
    if (!column) return;
    werase(column);
    if (hasScrollBar()) {
        const int count = static_cast<int>(items_.size());
        const int percent = top_ * 100 / (count - rows_);
        const int thumb = std::clamp(percent * (rows_ - 1) / 100, 0, rows_ - 1);
        wattrset(column, A_NORMAL);
        for (int row = 0; row < rows_; ++row) mvwaddstr(column, row, 0, row == thumb ? "█" : "▓");
    }
    scrollColumn_->redraw();
}

void ItemList::placeCursor() {
    auto* input = dynamic_cast<InputItem*>(selected());
    const int row = selectedRow();
    if (!input || !isActive() || row < 0 || row >= rows_) {
        if (Cursor().visible) SetCursorVisible(false);
        return;
    }
    TextArea& text = *rowTexts_[static_cast<std::size_t>(row)];
    const int column = std::clamp(input->cursorColumn(), 0, std::max(text.width() - 1, 0));
    Cursor().column = text.x() + column;
    Cursor().row = text.y();
    SetCursorVisible(true);
    if (text.curses()) {
        wmove(text.curses(), 0, column);
        Show(text.curses());
    }
}

}  // namespace Tesk
