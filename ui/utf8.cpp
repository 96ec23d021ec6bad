#include "ui/utf8.h"

#include <cwchar>

namespace Tesk::Utf8 {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool Continuation(unsigned char byte, unsigned char low = 0x80, unsigned char high = 0xBF) {
    return byte >= low && byte <= high;
}

}  // namespace

Char Decode(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0;
    };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {lead, 1, true};
    // The second byte's range depends on the lead (no overlong forms, no
    // surrogates, nothing past U+10FFFF); later bytes are plain continuations.
    std::size_t length = 0;
    unsigned char low = 0x80, high = 0xBF;
    char32_t value = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
        if (lead == 0xE0) low = 0xA0;
        if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;
    } else {
        return {kReplacement, 1, false};
    }
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = byte(i);
        const bool ok = i == 1 ? Continuation(next, low, high) : Continuation(next);
        if (!ok) return {kReplacement, 1, false};
        value = (value << 6) | (next & 0x3F);
    }
    return {value, length, true};
}

int Columns(char32_t codePoint) {
    if (codePoint < 0x20 || codePoint == 0x7F || (codePoint >= 0x80 && codePoint < 0xA0)) return -1;
    if (codePoint < 0x7F) return 1;
    const int width = ::wcwidth(static_cast<wchar_t>(codePoint));
    return width < 0 ? 1 : width;
}

int TextColumns(std::string_view text) {
    int columns = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Char c = Decode(text, at);
        const int width = c.valid ? Columns(c.codePoint) : 1;
        columns += width < 0 ? 1 : width;
        at += c.length;
    }
    return columns;
}

bool Typeable(char32_t codePoint) {
    const int width = Columns(codePoint);
    return width == 1 || width == 2;
}

std::string Encode(char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = kReplacement;
    std::string out;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
    return out;
}

std::size_t CharCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += Decode(text, at).length) ++count;
    return count;
}

std::size_t ByteOffset(std::string_view text, std::size_t n) {
    std::size_t at = 0;
    for (; n > 0 && at < text.size(); --n) at += Decode(text, at).length;
    return at;
}

}  // namespace Tesk::Utf8
