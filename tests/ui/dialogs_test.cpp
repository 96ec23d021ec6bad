// The ready-made dialogs: confirmation keys and their results, progress lines
// shown as they come and the two ways a progress dialog ends, and the one
// message dialog in its styles.
#include <curses.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "screen.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/progress_dialog.h"
#include "ui/string_ids.h"

namespace {

using namespace Tesk;
using TeskTest::FakeInput;
using TeskTest::RowText;

class DialogsTest : public TeskTest::ScreenTest {};

constexpr DialogSize kWithItems{60, 12, 6};

int Answer(std::deque<int> keys, std::vector<ConfirmKey> answers,
           std::optional<int> escape = ConfirmDialog::kCancelled) {
    ConfirmDialog ask(nullptr, kWithItems, "Title", "Body", Footer::kYesNoCancel,
                      std::move(answers));
    ask.setEscapeResult(escape);
    return TeskTest::RunWithKeys(ask, std::move(keys));
}

TEST_F(DialogsTest, ConfirmAnswersOnlyItsKeys) {
    EXPECT_EQ(Answer({'x', KeyEnter, ' ', KEY_F(11), 'Y'}, ConfirmDialog::YesNo()), 1);
    EXPECT_EQ(Answer({'y'}, ConfirmDialog::YesNo()), ConfirmDialog::kYes);
    EXPECT_EQ(Answer({'N'}, ConfirmDialog::YesNo()), ConfirmDialog::kNo);
    EXPECT_EQ(Answer({'n'}, ConfirmDialog::YesNo()), 2);
    EXPECT_EQ(Answer({KeyEscape}, ConfirmDialog::YesNo()), 0);
    EXPECT_EQ(Answer({KeyEnter, 'y', KEY_F(11)}, ConfirmDialog::F11()), 1);
    EXPECT_EQ(Answer({KEY_F(11), KeyEnter}, ConfirmDialog::Enter()), 1);
    EXPECT_EQ(Answer({KEY_F(2)}, {{KEY_F(2), 4}, {KEY_F(11), 5}}), 4);
    // Esc answering something else, or nothing at all.
    EXPECT_EQ(Answer({KeyEscape}, ConfirmDialog::F11(), 9), 9);
    EXPECT_EQ(Answer({KeyEscape, KEY_F(11)}, ConfirmDialog::F11(), std::nullopt), 1);
}

TEST_F(DialogsTest, ProgressLinesAreShownAsTheyComeThenEnterCloses) {
    FakeInput input({KeyEscape, 'x', KeyEnter, 'z'});
    std::vector<std::string> shown;
    ProgressDialog progress(nullptr, {60, 14, 6}, "Restore", "Please wait.",
                            [&](ProgressDialog& p) {
                                // Read from the terminal's picture, so only
                                // what has been refreshed counts.
                                auto row = [&p](int y, int width) {
                                    return RowText(curscr, p.y() + y, p.x() + 2, width);
                                };
                                p.add("Powering Off VMs.");
                                shown.push_back(row(7, 30));
                                p.done();
                                shown.push_back(row(7, 30));
                                p.add("Auto-configuring network.");
                                p.failed();
                                p.add("Step three.");
                                p.finishLine(" 3 of 3");
                                shown.push_back(row(8, 33));
                                shown.push_back(row(9, 20));
                                p.waitForEnter(Footer::kOkJoined);
                                return 6;
                            });
    EXPECT_EQ(Tesk::Run(progress), 6);
    EXPECT_EQ(input.left(), 1u);
    EXPECT_EQ(shown,
              (std::vector<std::string>{
                  "Powering Off VMs." + std::string(13, ' '), "Powering Off VMs. Done.       ",
                  "Auto-configuring network. Failed.", "Step three. 3 of 3  "}));
}

TEST_F(DialogsTest, HoldScreenDiscardsEveryKeyUntilTheIdleTimeout) {
    auto holding = [](ProgressDialog& p) -> int {
        p.add("Shutting down.");
        p.holdScreen();
    };
    {
        // The test's input runs dry: every key was read and none ended it.
        FakeInput input({KeyEnter, KeyEscape, 'q', KEY_F(11)});
        ProgressDialog progress(nullptr, kWithItems, "Shut Down Host", "", holding);
        EXPECT_THROW(Tesk::Run(progress), std::runtime_error);
        EXPECT_EQ(input.consumed(), 4);
        EXPECT_EQ(RowText(progress.curses(), 7, 2, 14), "Shutting down.");
    }
    keySession_.timeout = 60;
    FakeInput input({'a', 'b'}, 1000);
    ProgressDialog progress(nullptr, kWithItems, "Shut Down Host", "", holding);
    EXPECT_THROW(Tesk::Run(progress), TeskTimeout);
}

}  // namespace
