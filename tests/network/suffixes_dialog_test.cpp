// The suffix dialog's field: which characters a search list may hold.
#include <gtest/gtest.h>

#include "network/suffixes_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using namespace NetworkTest;

class SuffixesDialogTest : public TeskTest::ScreenTest {};

TEST_F(SuffixesDialogTest, TakesNamesBlanksAndCommasOnly) {
    SuffixesDialog dialog(nullptr, "lab.example");
    ScriptedKeys keys(Keys({{KEY_END}, Typed(", corp-2.example;{x}_@ ops.Example"), {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(dialog.text(), "lab.example, corp-2.examplex ops.Example");
}

}  // namespace
