// Pieces the management network dialogs share: mode entries whose Space the
// dialog handles itself (so that one key changes the mode, the marks and the
// enabled fields together), input fields that tell the dialog about every key
// they take, and the character filters of the address and name fields.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "ui/input_items.h"
#include "ui/items.h"
#include "ui/keys.h"

namespace Tesk {

// A radio or check item that leaves Space to its dialog.
template <typename ItemType>
class ModeItem : public ItemType {
public:
    using ItemType::ItemType;
    KeyResult handleKey(int key) override {
        return key == ' ' ? KeyResult::Ignored() : ItemType::handleKey(key);
    }
};

// An input field that calls taken() after every key it took (an edit or a
// caret move).
class WatchedInputItem : public InputItem {
public:
    WatchedInputItem(std::string label, std::string value, int fieldWidth, CharFilter filter,
                     std::function<void()> taken)
        : InputItem(std::move(label), std::move(value), fieldWidth), taken_(std::move(taken)) {
        setFilter(std::move(filter));
    }
    KeyResult handleKey(int key) override {
        KeyResult result = InputItem::handleKey(key);
        if (result == KeyResult::Redraw() && taken_) taken_();
        return result;
    }

private:
    std::function<void()> taken_;
};

namespace NetworkFilters {

inline bool AsciiLetter(char32_t c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
// IPv6 networks and gateways: hexadecimal digits, letters (for a zone), ':',
// '/' and '%'; no dot.
inline bool Ipv6Text(char32_t c) {
    return CharFilters::Digits(c) || AsciiLetter(c) || c == ':' || c == '/' || c == '%';
}
// Name servers of either family.
inline bool ServerAddress(char32_t c) {
    return CharFilters::HexDigits(c) || c == '.' || c == ':';
}
inline bool HostName(char32_t c) {
    return CharFilters::Digits(c) || AsciiLetter(c) || c == '-' || c == '.';
}
// Search domains separated by blanks or commas.
inline bool SuffixList(char32_t c) {
    return HostName(c) || c == ' ' || c == ',';
}

}  // namespace NetworkFilters

}  // namespace Tesk
