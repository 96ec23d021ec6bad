// Item lists: one item per row (labels, check boxes, radio buttons, input
// fields, carousels) with a scroll bar on the right. The owning dialog feeds
// keys to the list (movement) and to the selected item (toggling, editing).
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

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

    bool selectable() const { return selectable_; }
    bool selected() const { return selected_; }
    bool enabled() const { return enabled_; }
    // A disabled item is skipped by the selection and drawn in dark-grey.
    void setEnabled(bool enabled);
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

protected:
    void rebuild() override;

private:
    bool checked_;
    int indent_;
};

// "(o) label" / "( ) label". Keeping one choice among several is the owning
// dialog's business.
class RadioItem : public Item {
public:
    RadioItem(std::string label, bool chosen);
    bool chosen() const { return chosen_; }
    void setChosen(bool chosen);
    void toggle() { setChosen(!chosen_); }
    const std::string& label() const { return label_; }
    void setLabel(std::string label);

private:
    void rebuild();
    std::string label_;
    bool chosen_;
};

// A label and an editable field: "label   [ value ]" with the field's right
// bracket at the end of the row. Values scroll inside the field; a masked
// field shows "*" for every character. A field that has just gained or lost
// the selection is fresh: the first character typed replaces the whole value,
// Backspace or Delete clears it.
class InputItem : public Item {
public:
    // fieldWidth -1: half the list width minus 1.
    InputItem(std::string label, std::string value, int fieldWidth);

    void selectionChanged() override { fresh_ = true; }
    void draw(TextArea& row) override;
    void setSelected(bool selected) override;

    // Editing keys; false when the key is not one of them.
    bool handleKey(int key);

    const std::string& value() const { return value_; }
    void setValue(std::string value);
    const std::string& label() const { return label_; }
    void setLabel(std::string label);
    // Overwrites the value's characters, then empties it (for passwords).
    void wipe();
    bool masked() const { return masked_; }
    void setMasked(bool masked);
    // Light highlight (white field, the default) or dark (black field).
    void setLightHighlight(bool light);
    int cursor() const { return cursor_; }
    int viewOffset() const { return offset_; }
    bool fresh() const { return fresh_; }
    int fieldWidth() const;
    // The column of the text cursor inside the row text.
    int cursorColumn() const;

private:
    void rebuild();
    void keepCursorInView();

    std::string label_;
    std::string value_;
    int fieldWidth_;
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
