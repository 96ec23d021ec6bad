// A radio item that shows one entry of a list at a time (a Zerkel NIC, a port
// group, ...). Left/Right cycle it (the item answers them itself); the owning
// dialog opens the details of the current entry, typically on <D>.
//
// An entry (or a pointer to one) provides:
//   GetLabel()   the radio item's label for the entry
//   GetTitle()   the details dialog's title
//   GetDetails() the details text (markup)
//   GetFooter()  the details dialog's footer
#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "ui/dialog.h"
#include "ui/items.h"

namespace Tesk {

namespace CarouselDetail {

template <typename T>
const T& Deref(const T& entry) {
    return entry;
}
template <typename T>
requires requires(const T& p) {
    *p;
}
auto& Deref(const T& pointer) {
    return *pointer;
}

}  // namespace CarouselDetail

template <typename Entry>
concept CarouselEntry = requires(const Entry& e) {
    { CarouselDetail::Deref(e).GetLabel() } -> std::convertible_to<std::string>;
    { CarouselDetail::Deref(e).GetTitle() } -> std::convertible_to<std::string>;
    { CarouselDetail::Deref(e).GetDetails() } -> std::convertible_to<std::string>;
    { CarouselDetail::Deref(e).GetFooter() } -> std::convertible_to<std::string>;
};

template <CarouselEntry Entry, typename Details = InfoDialog>
class CarouselRadioItem : public RadioItem {
public:
    explicit CarouselRadioItem(std::vector<Entry> entries, bool chosen = false,
                               RadioGroup* group = nullptr)
        : RadioItem(std::string(), chosen, group), entries_(std::move(entries)) {
        showCurrent();
    }

    // Left / Right: the previous / next entry; otherwise a radio item's keys.
    KeyResult handleKey(int key) override {
        if (key != KEY_LEFT && key != KEY_RIGHT) return RadioItem::handleKey(key);
        key == KEY_LEFT ? previous() : next();
        return KeyResult::Redraw();
    }

    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    std::size_t index() const { return index_; }
    const Entry& current() const { return entries_.at(index_); }
    const std::vector<Entry>& entries() const { return entries_; }

    // The next / previous entry, wrapping round at either end.
    void next() {
        if (entries_.empty()) return;
        index_ = (index_ + 1) % entries_.size();
        showCurrent();
    }
    void previous() {
        if (entries_.empty()) return;
        index_ = (index_ + entries_.size() - 1) % entries_.size();
        showCurrent();
    }
    void setIndex(std::size_t index) {
        if (index >= entries_.size()) return;
        index_ = index;
        showCurrent();
    }

    // Runs the details dialog of the current entry over opener; 0 when there
    // is no entry.
    int showDetails(Window* opener) {
        if (entries_.empty()) return 0;
        const auto& entry = CarouselDetail::Deref(current());
        Details details(opener, std::string(entry.GetTitle()), std::string(entry.GetDetails()),
                        std::string(entry.GetFooter()));
        return Run(details);
    }

private:
    void showCurrent() {
        setLabel(entries_.empty() ? std::string()
                                  : std::string(CarouselDetail::Deref(current()).GetLabel()));
    }

    std::vector<Entry> entries_;
    std::size_t index_ = 0;
};

}  // namespace Tesk
