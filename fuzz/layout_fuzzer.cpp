// The layout pass alone, without curses: arbitrary bytes laid out as markup
// for an arbitrary width, with variables (some of whose values are markup).
// Byte 0 is the width (mod 200), the rest is the text. Besides not crashing,
// the layout must keep its promise: for a width of two columns or more, no
// laid-out line is wider than the width.
#include <cctype>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "ui/markup.h"
#include "ui/utf8.h"

namespace {

// The widest laid-out line, in columns up to its last visible character (tags
// take none, "{{}" one; white space past the edge, and a combining mark on it,
// is clipped when drawn, so a line may end in it).
int WidestLine(std::string_view laidOut) {
    int widest = 0, columns = 0;
    for (std::size_t i = 0; i < laidOut.size();) {
        const char c = laidOut[i];
        if (c == '\n') {
            columns = 0;
            ++i;
            continue;
        }
        bool visible = true;
        if (c == '{') {
            const std::size_t close = laidOut.find('}', i + 1);
            if (close == std::string_view::npos) break;
            visible = laidOut.substr(i, close - i + 1) == "{{}";
            if (visible) ++columns;
            i = close + 1;
        } else {
            const Tesk::Utf8::Char ch = Tesk::Utf8::Decode(laidOut, i);
            const int width = ch.valid ? Tesk::Utf8::Columns(ch.codePoint) : 1;
            columns += width < 0 ? 1 : width;
            visible = width != 0 && !std::isspace(static_cast<unsigned char>(c));
            i += ch.length;
        }
        if (visible && columns > widest) widest = columns;
    }
    return widest;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Columns are measured as the console measures them.
    std::setlocale(LC_ALL, "C.UTF-8");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const int width = data[0] % 200;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);

    // Values that are markup themselves: their braces are plain bytes to the
    // layout but tags to the drawing, so only robustness is asked of them.
    static const Tesk::VariableMap markupValues = [] {
        Tesk::VariableMap map;
        map["ip"] = [] { return std::string("{color:red}10.0.0.1 {align:right}"); };
        map["empty"] = [] { return std::string(); };
        return map;
    }();
    (void)Tesk::CountLines(Tesk::LayoutMarkup(text, width, markupValues));

    static const Tesk::VariableMap plainValues = [] {
        Tesk::VariableMap map;
        map["ip"] = [] { return std::string("10.0.0.1"); };
        map["kovaversion"] = [] { return std::string("8.0 \xE6\xBC\xA2\xE5\xAD\x97 \xCC\x81x"); };
        return map;
    }();
    const std::string laidOut = Tesk::LayoutMarkup(text, width, plainValues);
    if (width >= 2 && WidestLine(laidOut) > width) std::abort();
    return 0;
}
