// The usual kinds of input field: masked (passwords), numeric (digits only,
// optionally limited in length) and filtered by a character predicate, with
// the predicates the screens need.
#pragma once

#include <cctype>
#include <cstddef>
#include <string>
#include <utility>

#include "ui/items.h"

namespace Tesk {

namespace CharFilters {

inline bool Digits(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}
inline bool HexDigits(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}
// IPv4 addresses and masks.
inline bool DigitsAndDots(char c) {
    return Digits(c) || c == '.';
}
// IPv6 addresses, with an optional prefix length.
inline bool Ipv6Address(char c) {
    return HexDigits(c) || c == ':' || c == '.' || c == '/';
}
// Printable ASCII: what can be typed on every keyboard layout the console knows.
inline bool PrintableAscii(char c) {
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
