// A window that shows a markup text (see ui/markup.h).
#pragma once

#include <string>
#include <string_view>

#include "ui/markup.h"
#include "ui/window.h"

namespace Tesk {

class TextArea : public Window {
public:
    // A sub-window of parent at (x, y) relative to it; -1 colours take the
    // parent's.
    TextArea(Window* parent, int x, int y, int width, int height, int background, int foreground);
    // Text in the given colour on the parent's background.
    TextArea(Window* parent, int x, int y, int width, int height, int foreground);

    // Replace or extend the text; the area is scrolled back to the top, laid
    // out and drawn again.
    void setText(std::string_view text);
    void setText(const char* text) { setText(std::string_view(text ? text : "")); }
    void appendText(std::string_view text);
    void appendText(const char* text) { appendText(std::string_view(text ? text : "")); }

    const std::string& text() const { return text_; }
    const std::string& laidOut() const { return laidOut_; }
    int lineCount() const { return lines_; }

    // Long texts scroll by page. With hints on, a text taller than the area
    // keeps the area's last row for "<Page Up>" / "<Page Down>" hints showing
    // which way there is more to read.
    void setScrollHints(bool on);
    bool scrollHints() const { return hints_; }
    int scrollOffset() const { return offset_; }
    int pageHeight() const;
    bool canScrollUp() const { return offset_ > 0; }
    bool canScrollDown() const { return offset_ + pageHeight() < lines_; }
    bool pageUp();
    bool pageDown();
    // Page Up / Page Down; true when the key was one of them.
    bool handleScrollKey(int key);

    ColourMap& colours() { return colours_; }
    VariableMap& variables() { return variables_; }
    void setVariable(const std::string& name, VariableProvider provider);

protected:
    void paint() override;

private:
    void layout();
    void draw();

    std::string text_;
    std::string laidOut_;
    int lines_ = 1;
    int offset_ = 0;
    bool hints_ = false;
    ColourMap colours_;
    VariableMap variables_;
};

}  // namespace Tesk
