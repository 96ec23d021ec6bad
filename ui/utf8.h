// UTF-8 text as the screens show it: characters decoded from bytes, the
// columns each one takes, and characters turned back into bytes. Everything
// that measures text for the screen (the markup layout, input fields) counts
// through here, so what is measured is what curses draws.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tesk::Utf8 {

// One character at a position of a byte string. An invalid or cut sequence is
// one byte long, not valid, and stands for U+FFFD.
struct Char {
    char32_t codePoint = 0;
    std::size_t length = 1;
    bool valid = true;
};

// The character that starts at byte `at` (which must be inside text).
Char Decode(std::string_view text, std::size_t at);

// Columns the character takes on the screen: 0 for combining marks, 2 for
// wide (East Asian, emoji) characters, 1 for the rest; -1 for control
// characters (C0, DEL, C1), which the screens never print as they are. The
// C library's wcwidth decides, as it does for curses; where the locale cannot
// tell (not a UTF-8 locale) a printable character takes one column.
int Columns(char32_t codePoint);

// Columns of a whole text: invalid bytes one each, control characters one
// each (they are shown as spaces).
int TextColumns(std::string_view text);

// Whether the character can be typed into an input field: printable, one or
// two columns wide.
bool Typeable(char32_t codePoint);

// The UTF-8 bytes of a code point (U+FFFD for surrogates and values past
// U+10FFFF).
std::string Encode(char32_t codePoint);

// The number of characters of a text.
std::size_t CharCount(std::string_view text);

// The byte offset of the n-th character (the text's size when n is past its
// end).
std::size_t ByteOffset(std::string_view text, std::size_t n);

}  // namespace Tesk::Utf8
