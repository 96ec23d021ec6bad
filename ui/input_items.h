// The usual kinds of input field: masked (passwords), numeric (digits only,
// optionally limited in length) and filtered by a character predicate, with
// the predicates the screens need. Predicates see code points, so a filter
// for digits refuses every non-ASCII character as well.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "ui/items.h"

namespace Tesk {

namespace CharFilters {

inline bool Digits(char32_t c) {
    return c >= '0' && c <= '9';
}
inline bool HexDigits(char32_t c) {
    return Digits(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
// IPv4 addresses and masks.
inline bool DigitsAndDots(char32_t c) {
    return Digits(c) || c == '.';
}
// IPv6 addresses, with an optional prefix length.
inline bool Ipv6Address(char32_t c) {
    return HexDigits(c) || c == ':' || c == '.' || c == '/';
}
// Printable ASCII, for values that must be ASCII whatever the keyboard sends.
inline bool PrintableAscii(char32_t c) {
    return c >= 32 && c < 127;
}

}  // namespace CharFilters

// Shows one "*" per character.
class MaskedInputItem : public InputItem {
public:
    MaskedInputItem(std::string label, std::string value, int fieldWidth)
        : InputItem(std::move(label), std::move(value), fieldWidth) {
        setMasked(true);
    }
};

// Takes only the characters filter accepts.
class FilteredInputItem : public InputItem {
public:
    FilteredInputItem(std::string label, std::string value, int fieldWidth, CharFilter filter)
        : InputItem(std::move(label), std::move(value), fieldWidth) {
        setFilter(std::move(filter));
    }
};

// Digits only, at most maxLength of them (0: any number).
class NumericInputItem : public InputItem {
public:
    NumericInputItem(std::string label, std::string value, int fieldWidth,
                     std::size_t maxLength = 0)
        : InputItem(std::move(label), std::move(value), fieldWidth) {
        setFilter(CharFilters::Digits);
        setMaxLength(maxLength);
    }
};

}  // namespace Tesk
