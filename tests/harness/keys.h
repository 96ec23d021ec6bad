// The bytes the tests send for each key: a "linux" console keyboard's (infocmp
// linux), but for F1 to F5 (see F below).
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace TeskTest::Key {

inline constexpr std::string_view Enter = "\r";
inline constexpr std::string_view Esc = "\x1b";
inline constexpr std::string_view Tab = "\t";
inline constexpr std::string_view Backspace = "\x7f";  // DEL, as the console keyboard sends it
inline constexpr std::string_view CtrlH = "\b";
inline constexpr std::string_view Space = " ";

inline constexpr std::string_view Up = "\x1b[A";
inline constexpr std::string_view Down = "\x1b[B";
inline constexpr std::string_view Right = "\x1b[C";
inline constexpr std::string_view Left = "\x1b[D";

inline constexpr std::string_view Home = "\x1b[1~";
inline constexpr std::string_view Insert = "\x1b[2~";
inline constexpr std::string_view Delete = "\x1b[3~";
inline constexpr std::string_view End = "\x1b[4~";
inline constexpr std::string_view PageUp = "\x1b[5~";
inline constexpr std::string_view PageDown = "\x1b[6~";

// F1 .. F12. A console in a pseudo-terminal runs as "vt102" (it is not on a
// Linux console), whose description lacks the console's "\e[[A" .. "\e[[E" for
// F1 to F5; the console's own key table has the "\e[11~" .. "\e[15~" forms.
inline std::string F(int n) {
    static constexpr const char* kKeys[] = {"\x1b[11~", "\x1b[12~", "\x1b[13~", "\x1b[14~",
                                            "\x1b[15~", "\x1b[17~", "\x1b[18~", "\x1b[19~",
                                            "\x1b[20~", "\x1b[21~", "\x1b[23~", "\x1b[24~"};
    if (n < 1 || n > 12) throw std::out_of_range("no function key F" + std::to_string(n));
    return kKeys[n - 1];
}

// Ctrl with a letter: Ctrl('c') is byte 3.
inline std::string Ctrl(char letter) {
    return std::string(1, static_cast<char>(letter & 0x1f));
}

}  // namespace TeskTest::Key
