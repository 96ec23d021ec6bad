// A dialog that shows what a piece of work is doing while it runs: a title, a
// message, and progress lines in the lower band (below the message when the
// dialog has no item area), drawn again at once after every change. The work
// runs inside run() and ends it either with waitForEnter() or, for power
// commands, with holdScreen(), which never returns.
//
//     ProgressDialog progress(this, {60, 12, 6}, str(StrId::RestoreNetworkSettingsTitle),
//                             str(StrId::FactoryNetworkRestoreWait), [&](ProgressDialog& p) {
//         p.add(str(StrId::PoweringOffVms));
//         PowerOffVms() == 0 ? p.done() : p.failed();
//         p.waitForEnter(Footer::kOkJoined);
//         return 1;
//     });
//     Run(progress);
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ui/dialog.h"

namespace Tesk {

class ProgressDialog : public Dialog {
public:
    // Its result is run()'s result.
    using Work = std::function<int(ProgressDialog&)>;

    ProgressDialog(Window* opener, DialogSize size, std::string title, std::string message,
                   Work work);

    // Shows the texts, runs the work and returns what it returned.
    int run() override;

    // The progress text, each change shown at once.
    void add(std::string_view text);
    // Appends text and ends the line: finishLine(" Done.").
    void finishLine(std::string_view text);
    // " Done." / " Failed." from the string table, ending the line.
    void done();
    void failed();
    void clear();
    const std::string& progress() const { return progress_; }

    // Sets the footer and reads keys until <Enter>; every other key is
    // ignored. Idle timeout allowed.
    void waitForEnter(const std::string& footer = Footer::kOk);
    // Keeps the dialog on the screen and discards every key until the process
    // ends (the host is going down). Only the idle timeout leaves, by its
    // exception.
    [[noreturn]] void holdScreen();

private:
    void showProgress();

    Work work_;
    std::string progress_;
};

}  // namespace Tesk
