// Text beyond ASCII: characters decoded and measured in columns, laid out and
// drawn by those columns, and typed into input fields one character at a
// time (filters still refusing what they do not name).
#include <curses.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "screen.h"
#include "ui/input_items.h"
#include "ui/items.h"
#include "ui/keys.h"
#include "ui/markup.h"
#include "ui/textarea.h"
#include "ui/utf8.h"

namespace {

using namespace Tesk;
using TeskTest::RowText;

// "ü" (2 bytes), "€" (3 bytes), "漢" (3 bytes, two columns), a combining
// acute accent (no column of its own).
const std::string kU = "\xC3\xBC", kEuro = "\xE2\x82\xAC", kKan = "\xE6\xBC\xA2",
                  kAcute = "\xCC\x81";

// The screen runs in the UTF-8 locale that wcwidth measures by.
class Utf8Test : public TeskTest::ScreenTest {};

TEST_F(Utf8Test, CharactersAreDecodedAndMeasured) {
    const std::string text = "a" + kU + kEuro + kKan + kAcute + "\xFF" + "\xE2\x82";
    std::vector<Utf8::Char> chars;
    for (std::size_t at = 0; at < text.size(); at += chars.back().length)
        chars.push_back(Utf8::Decode(text, at));
    ASSERT_EQ(chars.size(), 8u);  // the cut "€" is two invalid bytes
    EXPECT_EQ(chars[1].codePoint, U'ü');
    EXPECT_EQ(chars[2].codePoint, U'€');
    EXPECT_EQ(chars[3].length, 3u);
    EXPECT_FALSE(chars[5].valid);
    EXPECT_FALSE(chars[6].valid);
    EXPECT_EQ(Utf8::Columns(U'ü'), 1);
    EXPECT_EQ(Utf8::Columns(U'漢'), 2);
    EXPECT_EQ(Utf8::Columns(0x301), 0);
    EXPECT_EQ(Utf8::Columns(0x85), -1);  // C1 control
    EXPECT_EQ(Utf8::TextColumns(text), 1 + 1 + 1 + 2 + 0 + 1 + 2);
    EXPECT_EQ(Utf8::CharCount(text), 8u);
    EXPECT_EQ(Utf8::ByteOffset(text, 3), 6u);
    EXPECT_EQ(Utf8::Encode(U'€'), kEuro);
    EXPECT_EQ(Utf8::Encode(0xD800), "\xEF\xBF\xBD");  // a surrogate is no character
    // Overlong forms and surrogates do not decode.
    EXPECT_FALSE(Utf8::Decode("\xC0\xAF", 0).valid);
    EXPECT_FALSE(Utf8::Decode("\xED\xA0\x80", 0).valid);
    EXPECT_TRUE(Utf8::Typeable(U'€'));
    EXPECT_FALSE(Utf8::Typeable(0x301));
    EXPECT_FALSE(Utf8::Typeable(0x7F));
}

TEST_F(Utf8Test, LayoutCountsColumnsAndNeverSplitsACharacter) {
    // Five characters, five columns: one line.
    EXPECT_EQ(LayoutMarkup("x" + kU + kEuro + "yz", 5), "x" + kU + kEuro + "yz");
    // A wide character that does not fit the rest of the line starts the next.
    EXPECT_EQ(LayoutMarkup("ab" + kKan + "c", 3), "ab\n" + kKan + "c");
    // Wrapping at the last space counts columns, not bytes.
    EXPECT_EQ(LayoutMarkup(kU + kU + kU + " " + kEuro + kEuro, 5),
              kU + kU + kU + "\n" + kEuro + kEuro);
    // Right alignment pads by columns.
    EXPECT_EQ(LayoutMarkup("{align:right}" + kKan + "{/align}", 4), "  " + kKan);
    // A combining accent stays with its letter.
    EXPECT_EQ(LayoutMarkup("abc" + std::string("e") + kAcute + "f", 4), "abce" + kAcute + "\nf");
}

TEST_F(Utf8Test, FieldsEditByCharacterAndMeasureByColumn) {
    InputItem field("Name", "", 6);
    for (int key : {int{'x'}, CharKey(U'ü'), CharKey(U'€'), int{'y'}}) field.handleKey(key);
    EXPECT_EQ(field.value(), "x" + kU + kEuro + "y");
    EXPECT_EQ(field.length(), 4u);
    EXPECT_EQ(field.cursor(), 4);
    // Backspace and Delete take whole characters.
    field.handleKey(KEY_LEFT);
    field.handleKey(KEY_BACKSPACE);
    EXPECT_EQ(field.value(), "x" + kU + "y");
    field.handleKey(KEY_HOME);
    field.handleKey(KEY_RIGHT);
    field.handleKey(KEY_DC);
    EXPECT_EQ(field.value(), "xy");
    EXPECT_EQ(field.cursor(), 1);

    // Wide characters take two columns of the field: three of them need six,
    // so the view scrolls to keep a column for the caret.
    InputItem wide("W", "", 6);
    for (int i = 0; i < 3; ++i) wide.handleKey(CharKey(U'漢'));
    EXPECT_EQ(wide.cursor(), 3);
    EXPECT_EQ(wide.viewOffset(), 1);
    EXPECT_EQ(wide.cursorColumn() - wide.fieldColumn(), 4);
    EXPECT_NE(wide.text().find("[ " + kKan + kKan + "   ]"), std::string::npos) << wide.text();

    // A masked field shows one star per character, whatever its bytes.
    MaskedInputItem secret("P", "", 10);
    for (int key : {CharKey(U'ü'), CharKey(U'€'), int{'a'}}) secret.handleKey(key);
    EXPECT_NE(secret.text().find("[ ***        ]"), std::string::npos) << secret.text();
    EXPECT_EQ(secret.cursorColumn() - secret.fieldColumn(), 3);

    // Controls, combining marks and curses key codes are no characters.
    EXPECT_EQ(field.handleKey(CharKey(0x301)), KeyResult::Ignored());
    EXPECT_EQ(field.handleKey(KEY_F(1)), KeyResult::Ignored());
    EXPECT_EQ(field.value(), "xy");
}

}  // namespace
