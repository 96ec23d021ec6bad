// Host and user text made safe for markup.
#include "ui/markup_escape.h"

namespace Tesk {

namespace {

std::string Escape(std::string_view text, bool keepLineFeeds) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '{')
            out.append("{{}");
        else if (c == '\n' && keepLineFeeds)
            out.push_back(c);
        else if (byte < 0x20 || byte == 0x7f)
            out.push_back(' ');
        else
            out.push_back(c);
    }
    return out;
}

}  // namespace

std::string EscapeHostText(std::string_view text) {
    return Escape(text, false);
}

std::string EscapeHostLines(std::string_view text) {
    return Escape(text, true);
}

}  // namespace Tesk
