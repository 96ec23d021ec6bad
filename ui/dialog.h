// Frames (windows opened over another window, with the string table) and the
// dialogs built on them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ui/strings.h"
#include "ui/textarea.h"
#include "ui/window.h"

namespace Tesk {

// A top-level window that knows the window it was opened over (none for the
// bottom window) and the English string table.
class Frame : public Window {
public:
    Frame(Window* opener, int x, int y, int width, int height, int background, int foreground);

    Window* opener() const override { return opener_; }
    StringFactory& strings() const { return *strings_; }
    // The fixed text with that id.
    const char* str(std::uint32_t id) const { return strings_->get(id); }

private:
    Window* opener_;
    StringFactory* strings_;
};

// A frame centred on the screen: an upper band in dark-grey with the title and
// the body text, a lower band in yellow with an optional item area and the
// footer on its second-to-last row, and a box around it all.
class Dialog : public Frame {
public:
    // width x height, the upper band upperHeight rows high. The item area
    // exists only when the lower band has more than 4 rows.
    Dialog(Window* opener, int width, int height, int upperHeight);

    // Re-activating a dialog redraws its opener first, so that the dimmed
    // screen behind it is complete.
    void setActive(bool active) override;

    void setTitle(const std::string& text);
    void setBody(const std::string& text);
    void setFooter(const std::string& text);
    const std::string& title() const { return title_; }
    const std::string& body() const { return body_; }

    Window& upperBand() { return *upper_; }
    Window& lowerBand() { return *lower_; }
    TextArea& titleArea() { return *titleArea_; }
    TextArea& bodyArea() { return *bodyArea_; }
    TextArea& footerArea() { return *footerArea_; }
    // Null when the lower band has no room for items.
    Window* itemArea() { return itemArea_.get(); }

protected:
    std::string title_;
    std::string body_;

private:
    // Declared parents first: members are destroyed children first.
    std::unique_ptr<Window> upper_;
    std::unique_ptr<Window> lower_;
    std::unique_ptr<TextArea> titleArea_;
    std::unique_ptr<TextArea> bodyArea_;
    std::unique_ptr<TextArea> footerArea_;
    std::unique_ptr<Window> itemArea_;
};

// Shows a title and a text until <Enter>; every other key, <Esc> included, is
// ignored. run() returns 1.
class NotificationDialog : public Dialog {
public:
    NotificationDialog(Window* opener, std::string title, std::string body, int width = 70,
                       int height = 10, int upperHeight = 7);
    int run() override;

private:
    std::string notificationTitle_;
    std::string notificationBody_;
};

// An error or notice from the string table: the text by textId (taken when the
// dialog is made), the title by titleId (taken when it runs); 70 x 10.
class MessageDialog : public Dialog {
public:
    MessageDialog(Window* opener, std::uint32_t titleId, std::uint32_t textId);
    int run() override;

private:
    std::uint32_t titleId_;
};

// The details of one entry of a list (an adapter, a port group): a title, a
// multi-line text and a footer, shown until <Enter>. run() returns 1. The
// text scrolls with Page Up / Page Down when it is taller than the dialog.
class InfoDialog : public Dialog {
public:
    InfoDialog(Window* opener, std::string title, std::string details, std::string footer);
    int run() override;

private:
    std::string footer_;
};

// Reads keys for w until <Enter> (idle timeout allowed); used by the OK-only
// dialogs.
void WaitForEnter(Window& w);

}  // namespace Tesk
