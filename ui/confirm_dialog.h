// A question answered with one key: a title, a body, an optional question in
// the lower band, a footer, and the keys that answer it, each with its result.
// <Esc> answers 0 unless told otherwise; every other key is ignored.
//
//     ConfirmDialog ask(this, {60, 12, 6}, str(StrId::RestoreNetworkFactorySettings),
//                       str(StrId::RestoreNetworkFactorySettingsHelp),
//                       Footer::kYesResetCancel, ConfirmDialog::F11());
//     ask.setQuestion(str(StrId::ResetNetworkAreYouSure));
//     if (Run(ask) == 1) ...
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ui/dialog.h"

namespace Tesk {

// A key that answers a confirm dialog and the result it gives.
struct ConfirmKey {
    int key;
    int result;
};

class ConfirmDialog : public Dialog {
public:
    static constexpr int kCancelled = 0;
    static constexpr int kYes = 1;
    static constexpr int kNo = 2;

    ConfirmDialog(Window* opener, DialogSize size, std::string title, std::string body,
                  std::string footer, std::vector<ConfirmKey> keys);

    // A line in the lower band (needs an item area).
    void setQuestion(std::string text);
    // What <Esc> answers; none: <Esc> is ignored like any other key.
    void setEscapeResult(std::optional<int> result) { escapeResult_ = result; }

    // Shows the texts and waits for one of the keys; idle timeout allowed.
    int run() override;

    // The usual answers: <F11> or <Enter> confirms (1); Y/y yes (1), N/n no (2).
    static std::vector<ConfirmKey> F11();
    static std::vector<ConfirmKey> Enter();
    static std::vector<ConfirmKey> YesNo();

private:
    std::vector<ConfirmKey> keys_;
    std::string question_;
    std::optional<int> escapeResult_ = kCancelled;
};

}  // namespace Tesk
