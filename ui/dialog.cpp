#include "ui/dialog.h"

#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/terminal.h"
#include "ui/footers.h"

namespace Tesk {

Frame::Frame(Window* opener, int x, int y, int width, int height, int background, int foreground)
    : Window(x, y, width, height, background, foreground),
      opener_(opener),
      strings_(StringFactory::GetFactory("en_US")) {}

Dialog::Dialog(Window* opener, int width, int height, int upperHeight)
    : Frame(opener, (COLS - width) / 2, (LINES - height) / 2, width, height, ColourBlack,
            ColourWhite) {
    if (curses()) werase(curses());
    const int lowerHeight = height - upperHeight;
    upper_ = std::make_unique<Window>(this, 0, 0, width, upperHeight, ColourDarkGrey, ColourWhite);
    lower_ = std::make_unique<Window>(this, 0, upperHeight, width, lowerHeight, ColourYellow,
                                      ColourWhite);
    if (curses()) box(curses(), 0, 0);
    titleArea_ = std::make_unique<TextArea>(upper_.get(), 3, 1, width - 6, 1, ColourWhite);
    bodyArea_ =
        std::make_unique<TextArea>(upper_.get(), 3, 3, width - 6, upperHeight - 4, ColourLightGrey);
    footerArea_ =
        std::make_unique<TextArea>(lower_.get(), 2, lowerHeight - 2, width - 4, 1, ColourBlack);
    if (lowerHeight - 4 >= 1)
        itemArea_ = std::make_unique<Window>(lower_.get(), 2, 1, width - 4, lowerHeight - 4,
                                             ColourYellow, ColourDarkGrey);
}

void Dialog::setActive(bool active) {
    if (active && opener()) opener()->redraw();
    Frame::setActive(active);
}

void Dialog::setTitle(const std::string& text) {
    title_ = text;
    titleArea_->setText(title_);
}

void Dialog::setBody(const std::string& text) {
    body_ = text;
    bodyArea_->setText(body_);
}

void Dialog::setFooter(const std::string& text) {
    footerArea_->setText(text);
}

void WaitForEnter(Window& w) {
    while (ReadKey(&w, true) != KeyEnter) {
    }
}

NotificationDialog::NotificationDialog(Window* opener, std::string title, std::string body,
                                       int width, int height, int upperHeight)
    : Dialog(opener, width, height, upperHeight),
      notificationTitle_(std::move(title)),
      notificationBody_(std::move(body)) {}

int NotificationDialog::run() {
    setTitle(notificationTitle_);
    setBody(notificationBody_);
    setFooter(Footer::kOk);
    WaitForEnter(*this);
    return 1;
}

MessageDialog::MessageDialog(Window* opener, std::uint32_t titleId, std::uint32_t textId)
    : Dialog(opener, 70, 10, 7), titleId_(titleId) {
    body_ = str(textId);
}

int MessageDialog::run() {
    setTitle(str(titleId_));
    setBody(body_);
    setFooter(Footer::kOk);
    WaitForEnter(*this);
    return 1;
}

InfoDialog::InfoDialog(Window* opener, std::string title, std::string details, std::string footer)
    : Dialog(opener, 70, 13, 10), footer_(std::move(footer)) {
    title_ = std::move(title);
    body_ = std::move(details);
    bodyArea().setScrollHints(true);
}

int InfoDialog::run() {
    setTitle(title_);
    setBody(body_);
    setFooter(footer_);
    for (;;) {
        int key = ReadKey(this, true);
        if (key == KeyEnter) return 1;
        bodyArea().handleScrollKey(key);
    }
}

}  // namespace Tesk
