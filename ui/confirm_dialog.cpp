#include "ui/confirm_dialog.h"

#include "ui/key_loop.h"
#include "ui/keys.h"

namespace Tesk {

ConfirmDialog::ConfirmDialog(Window* opener, DialogSize size, std::string title, std::string body,
                             std::string footer, std::vector<ConfirmKey> keys)
    : Dialog(opener, size), keys_(std::move(keys)) {
    title_ = std::move(title);
    body_ = std::move(body);
    footer_ = std::move(footer);
}

void ConfirmDialog::setQuestion(std::string text) {
    question_ = std::move(text);
    if (TextArea* area = itemText()) area->setText(question_);
}

int ConfirmDialog::run() {
    showTexts();
    if (!question_.empty())
        if (TextArea* area = itemText()) area->setText(question_);
    redraw();
    return RunKeyLoop(*this, {.handler = [this](int key) {
        for (const ConfirmKey& k : keys_)
            if (k.key == key) return KeyResult::Leave(k.result);
        if (key == KeyEscape && escapeResult_) return KeyResult::Leave(*escapeResult_);
        return KeyResult::Ignored();
    }});
}

std::vector<ConfirmKey> ConfirmDialog::F11() {
    return {{KEY_F(11), kYes}};
}

std::vector<ConfirmKey> ConfirmDialog::Enter() {
    return {{KeyEnter, kYes}};
}

std::vector<ConfirmKey> ConfirmDialog::YesNo() {
    return {{'Y', kYes}, {'y', kYes}, {'N', kNo}, {'n', kNo}};
}

}  // namespace Tesk
