#include "ui/progress_dialog.h"

#include <cstdlib>

#include "ui/key_loop.h"
#include "ui/keys.h"
#include "ui/string_ids.h"

namespace Tesk {

ProgressDialog::ProgressDialog(Window* opener, DialogSize size, std::string title,
                               std::string message, Work work)
    : Dialog(opener, size), work_(std::move(work)) {
    title_ = std::move(title);
    body_ = std::move(message);
}

int ProgressDialog::run() {
    showTexts();
    showProgress();
    redraw();
    return work_ ? work_(*this) : 0;
}

void ProgressDialog::add(std::string_view text) {
    progress_ += text;
    showProgress();
}

void ProgressDialog::finishLine(std::string_view text) {
    progress_ += text;
    progress_ += '\n';
    showProgress();
}

void ProgressDialog::done() {
    finishLine(std::string(" ") + str(StrId::Done));
}

void ProgressDialog::failed() {
    finishLine(std::string(" ") + str(StrId::Failed));
}

void ProgressDialog::clear() {
    progress_.clear();
    showProgress();
}

void ProgressDialog::showProgress() {
    if (TextArea* area = itemText()) {
        area->setText(progress_);
    } else {
        bodyArea().setText(progress_.empty() ? body_ : body_ + "\n" + progress_);
    }
}

void ProgressDialog::waitForEnter(const std::string& footer) {
    setFooter(footer);
    WaitForEnter(*this);
}

void ProgressDialog::holdScreen() {
    RunKeyLoop(*this, {.handler = [](int) { return KeyResult::Handled(); }});
    // The loop above never answers Leave.
    std::abort();
}

}  // namespace Tesk
