// Item lists: one item per row (labels, check boxes, radio buttons, input
// fields, carousels) with a scroll bar on the right. The selected item answers
// its own keys (toggling, editing); the list answers Up/Down.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/key_result.h"
#include "ui/terminal.h"
#include "ui/textarea.h"
#include "ui/window.h"

namespace Tesk {

class Item {
public:
    explicit Item(bool selectable = true) : selectable_(selectable) {}
    // Called whenever the selected flag changes.
    virtual void selectionChanged() {}
    virtual ~Item() = default;
    // Shows the item in its row (by default its display text).
    virtual void draw(TextArea& row) { row.setText(text_); }
    virtual void setSelected(bool selected);
    // A key while the item is selected; Ignored (the default) passes it on to
    // the dialog. Redraw when the item's text changed.
    virtual KeyResult handleKey(int key);

    bool selectable() const { return selectable_; }
    bool selected() const { return selected_; }
    bool enabled() const { return enabled_; }
    // A disabled item is skipped by the selection and drawn in dark-grey.
    void setEnabled(bool enabled);
    // An unavailable item is drawn in dark-grey too but can be selected, so
    // that its one-line reason can be shown beside the list; it takes no
    // keys. An empty reason makes it available again.
    void setUnavailable(std::string reason);
    const std::string& whyUnavailable() const { return whyUnavailable_; }
    int background() const { return background_; }
    int foreground() const { return foreground_; }
    const std::string& text() const { return text_; }

    // The width of the row text the item is drawn into; set by the list.
    int listWidth() const { return listWidth_; }
    void setListWidth(int width) { listWidth_ = width; }

protected:
    std::string text_;

private:
    bool selectable_;
    bool selected_ = false;
    bool enabled_ = true;
    std::string whyUnavailable_;
    int background_ = ColourYellow;
    int foreground_ = ColourBlack;
    int listWidth_ = 0;
};

// A line of text; not selectable unless asked.
class LabelItem : public Item {
public:
    explicit LabelItem(std::string label, bool selectable = false);
    const std::string& label() const { return label_; }
    void setLabel(std::string label);

protected:
    virtual void rebuild() { text_ = label_; }
    std::string label_;
};

// "[X] label" / "[ ] label", after indent spaces.
class CheckItem : public LabelItem {
public:
    CheckItem(std::string label, bool checked, int indent = 0);
    bool checked() const { return checked_; }
    void setChecked(bool checked);
    void toggle() { setChecked(!checked_); }
    // Space toggles.
    KeyResult handleKey(int key) override;

protected:
    void rebuild() override;

private:
    bool checked_;
    int indent_;
};

class RadioItem;

// Radio items of which exactly one is chosen. Items join it when they are made;
// the first one is chosen unless a later one joins chosen. The group only
// points at its items: use it while they live (while their list lives).
class RadioGroup {
public:
    RadioGroup() = default;
    RadioGroup(const RadioGroup&) = delete;
    RadioGroup& operator=(const RadioGroup&) = delete;

    // The item becomes the chosen one; every other member is cleared.
    void choose(RadioItem& item);
    RadioItem* chosen() const;
    // The position of the chosen item in joining order; -1 when empty.
    int chosenIndex() const;
    const std::vector<RadioItem*>& items() const { return items_; }

private:
    friend class RadioItem;
    void join(RadioItem& item);

    std::vector<RadioItem*> items_;
};

// "(o) label" / "( ) label". In a group Space moves the group's choice here;
// without one it toggles the item.
class RadioItem : public Item {
public:
    RadioItem(std::string label, bool chosen, RadioGroup* group = nullptr);
    bool chosen() const { return chosen_; }
    // In a group, true moves the group's choice here and false does nothing
    // (the group keeps its one choice).
    void setChosen(bool chosen);
    void toggle() { setChosen(!chosen_); }
    const std::string& label() const { return label_; }
    void setLabel(std::string label);
    RadioGroup* group() const { return group_; }
    KeyResult handleKey(int key) override;

private:
    friend class RadioGroup;
    void mark(bool chosen);
    void rebuild();
    std::string label_;
    bool chosen_;
    RadioGroup* group_;
};

// A label and an editable field: "label   [ value ]" with the field's right
// bracket at the end of the row. Values are UTF-8 and are edited by
// character; the field width, the view and the caret count screen columns
// (a wide character takes two). Values scroll inside the field; a masked
// field shows "*" for every character. A field that has just gained or lost
// the selection is fresh: the first character typed replaces the whole value,
// Backspace or Delete clears it. A filter and a maximum length limit what can
// be typed (ui/input_items.h has the usual kinds).
class InputItem : public Item {
public:
    // Whether a typed character (a code point) may go into the value.
    using CharFilter = std::function<bool(char32_t)>;

    // fieldWidth -1: half the list width minus 1.
    InputItem(std::string label, std::string value, int fieldWidth);

    void selectionChanged() override { fresh_ = true; }
    void draw(TextArea& row) override;
    void setSelected(bool selected) override;

    // Editing keys: Redraw after an edit or a cursor move, Handled for a
    // character refused by the filter or the maximum length (it goes nowhere
    // else), Ignored for every other key. Characters are the printable ones
    // one or two columns wide (ASCII keys, CharKey for the rest).
    KeyResult handleKey(int key) override;
    // Characters the filter refuses are swallowed; no filter takes every
    // printable character.
    void setFilter(CharFilter filter) { filter_ = std::move(filter); }
    // Typing stops at this many characters; 0 (the default): no limit.
    void setMaxLength(std::size_t length) { maxLength_ = length; }
    std::size_t maxLength() const { return maxLength_; }

    const std::string& value() const { return value_; }
    // The value's length in characters.
    std::size_t length() const;
    void setValue(std::string value);
    const std::string& label() const { return label_; }
    void setLabel(std::string label);
    // Overwrites the value's characters, then empties it (for passwords).
    void wipe();
    bool masked() const { return masked_; }
    void setMasked(bool masked);
    // Light highlight (white field, the default) or dark (black field).
    void setLightHighlight(bool light);
    // The caret and the first character shown, counted in characters.
    int cursor() const { return cursor_; }
    int viewOffset() const { return offset_; }
    bool fresh() const { return fresh_; }
    // In columns.
    int fieldWidth() const;
    // The column of the field's first character inside the row text.
    int fieldColumn() const;
    // The column of the text cursor inside the row text.
    int cursorColumn() const;

private:
    void rebuild();
    void keepCursorInView();
    void eraseChar(int index);

    bool accepts(char32_t c) const;

    std::string label_;
    std::string value_;
    int fieldWidth_;
    CharFilter filter_;
    std::size_t maxLength_ = 0;
    bool masked_ = false;
    bool lightHighlight_ = true;
    int cursor_ = 0;
    int offset_ = 0;
    bool fresh_ = true;
};

// The list: width x height at (x, y) in parent (usually a dialog's item area).
// Rows are the list's width minus the scroll-bar column; each row shows its
// item from column 1, width - 3 columns wide.
class ItemList : public Window {
public:
    ItemList(Window* parent, int x, int y, int width, int height);
    ~ItemList() override;

    // Takes ownership; returns the item.
    Item& add(std::unique_ptr<Item> item);
    template <typename T, typename... Args>
    T& emplace(Args&&... args) {
        auto item = std::make_unique<T>(std::forward<Args>(args)...);
        T& ref = *item;
        add(std::move(item));
        return ref;
    }

    // The n-th selectable item (from 0) becomes the selected one.
    void selectByOrdinal(int n);
    // The next / previous selectable, enabled item; false (and nothing
    // changed) when there is none.
    bool moveDown();
    bool moveUp();
    // Up / Down: the previous / next item (Redraw), Handled at either end;
    // Ignored for other keys.
    KeyResult moveKey(int key);
    // The key to the selected item; Ignored when nothing is selected.
    KeyResult selectedKey(int key);
    void draw();

    std::size_t size() const { return items_.size(); }
    Item& at(std::size_t i) { return *items_[i]; }
    // The selected item, or null.
    Item* selected();
    int selectedIndex() const { return selected_; }
    int selectedOrdinal() const { return ordinal_; }
    int selectedRow() const { return selected_ < 0 ? -1 : selected_ - top_; }
    int top() const { return top_; }
    int rowCount() const { return rows_; }
    bool hasScrollBar() const { return static_cast<int>(items_.size()) > rows_; }
    Window& listArea() { return *listArea_; }
    Window& scrollColumn() { return *scrollColumn_; }
    TextArea& rowText(int row) { return *rowTexts_[static_cast<std::size_t>(row)]; }

private:
    bool selectable(int index) const;
    void select(int index);
    void drawScrollBar();
    void placeCursor();

    int rows_;
    std::unique_ptr<Window> listArea_;
    std::unique_ptr<Window> scrollColumn_;
    std::vector<std::unique_ptr<Window>> rowWindows_;
    std::vector<std::unique_ptr<TextArea>> rowTexts_;
    std::vector<std::unique_ptr<Item>> items_;
    int selected_ = -1;
    int ordinal_ = -1;
    int top_ = 0;
};

}  // namespace Tesk
