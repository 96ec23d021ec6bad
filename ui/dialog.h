// Frames (windows opened over another window, with the string table), the
// dialog layout built on them, and the message dialogs shown until <Enter>.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "ui/footers.h"
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

// A dialog's geometry: width x height, the upper band upperHeight rows high.
struct DialogSize {
    int width;
    int height;
    int upperHeight;
};

// A frame centred on the screen: an upper band in dark-grey with the title and
// the body text, a lower band in yellow with an optional item area and the
// footer on its second-to-last row, and a box around it all.
class Dialog : public Frame {
public:
    // The item area exists only when the lower band has more than 4 rows.
    Dialog(Window* opener, int width, int height, int upperHeight);
    Dialog(Window* opener, DialogSize size)
        : Dialog(opener, size.width, size.height, size.upperHeight) {}

    // Re-activating a dialog redraws its opener first, so that the dimmed
    // screen behind it is complete.
    void setActive(bool active) override;

    // Each stores its text and shows it at once.
    void setTitle(const std::string& text);
    void setBody(const std::string& text);
    void setFooter(const std::string& text);
    const std::string& title() const { return title_; }
    const std::string& body() const { return body_; }
    const std::string& footer() const { return footer_; }
    // Shows the stored title, body and footer again (dialogs that store them
    // when made show them when they run).
    void showTexts();

    Window& upperBand() { return *upper_; }
    Window& lowerBand() { return *lower_; }
    TextArea& titleArea() { return *titleArea_; }
    TextArea& bodyArea() { return *bodyArea_; }
    TextArea& footerArea() { return *footerArea_; }
    // Null when the lower band has no room for items.
    Window* itemArea() { return itemArea_.get(); }
    // A text area over the whole item area in its colours, made on first use,
    // for a question or progress lines; null without an item area.
    TextArea* itemText();

protected:
    std::string title_;
    std::string body_;
    std::string footer_;

private:
    // Declared parents first: members are destroyed children first.
    std::unique_ptr<Window> upper_;
    std::unique_ptr<Window> lower_;
    std::unique_ptr<TextArea> titleArea_;
    std::unique_ptr<TextArea> bodyArea_;
    std::unique_ptr<TextArea> footerArea_;
    std::unique_ptr<Window> itemArea_;
    std::unique_ptr<TextArea> itemText_;
};

// How a message dialog looks: its size, its footer, and whether the body
// scrolls (Page Up / Page Down, with hints) when it is taller than the band.
struct MessageStyle {
    DialogSize size{70, 10, 7};
    std::string footer = Footer::kOk;
    bool scrolling = false;

    // The details of one entry of a list (an adapter, a port group): 70 x 13,
    // scrolling, with the entry's own footer.
    static MessageStyle Details(std::string footer) {
        return {{70, 13, 10}, std::move(footer), true};
    }
};

// A title and a text shown until <Enter>; every other key, <Esc> included, is
// ignored (Page Up / Page Down scroll a scrolling body). run() returns 1. The
// idle timeout may end it.
class MessageDialog : public Dialog {
public:
    MessageDialog(Window* opener, std::string title, std::string body, MessageStyle style = {});
    // An error or notice from the string table, in the default style.
    MessageDialog(Window* opener, std::uint32_t titleId, std::uint32_t textId);
    int run() override;

private:
    bool scrolling_;
};

// A message given as texts, in any size (default 70 x 10, upper band 7).
class NotificationDialog : public MessageDialog {
public:
    NotificationDialog(Window* opener, std::string title, std::string body, int width = 70,
                       int height = 10, int upperHeight = 7)
        : MessageDialog(opener, std::move(title), std::move(body),
                        {{width, height, upperHeight}, Footer::kOk, false}) {}
};

// A message in the details style (what a carousel's <D> shows).
class InfoDialog : public MessageDialog {
public:
    InfoDialog(Window* opener, std::string title, std::string details, std::string footer)
        : MessageDialog(opener, std::move(title), std::move(details),
                        MessageStyle::Details(std::move(footer))) {}
};

// Reads keys for w until <Enter> (idle timeout allowed).
void WaitForEnter(Window& w);

}  // namespace Tesk
