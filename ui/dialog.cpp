#include "ui/dialog.h"

#include "ui/footers.h"
#include "ui/key_loop.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/terminal.h"

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
    footer_ = text;
    footerArea_->setText(footer_);
}

void Dialog::showTexts() {
    titleArea_->setText(title_);
    bodyArea_->setText(body_);
    footerArea_->setText(footer_);
}

TextArea* Dialog::itemText() {
    if (!itemText_ && itemArea_)
        itemText_ = std::make_unique<TextArea>(itemArea_.get(), 0, 0, itemArea_->width(),
                                               itemArea_->height(), -1, -1);
    return itemText_.get();
}

void WaitForEnter(Window& w) {
    RunKeyLoop(w, {.handler = [](int key) {
                   return key == KeyEnter ? KeyResult::Leave(1) : KeyResult::Ignored();
               }});
}

MessageDialog::MessageDialog(Window* opener, std::string title, std::string body,
                             MessageStyle style)
    : Dialog(opener, style.size), scrolling_(style.scrolling) {
    title_ = std::move(title);
    body_ = std::move(body);
    footer_ = std::move(style.footer);
    bodyArea().setScrollHints(scrolling_);
}

MessageDialog::MessageDialog(Window* opener, std::uint32_t titleId, std::uint32_t textId)
    : MessageDialog(opener, std::string(), std::string()) {
    title_ = str(titleId);
    body_ = str(textId);
}

int MessageDialog::run() {
    showTexts();
    return RunKeyLoop(*this, {.handler = [this](int key) {
        if (key == KeyEnter) return KeyResult::Leave(1);
        if (scrolling_ && bodyArea().handleScrollKey(key)) return KeyResult::Handled();
        return KeyResult::Ignored();
    }});
}

}  // namespace Tesk
