// Drives a dialog with a fixed list of keys and notes, at every key read, the
// title of the window that asked: so a test sees which message interrupted
// the dialog and where the dialog went on.
#pragma once

#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/ui/screen.h"
#include "ui/dialog.h"

namespace NetworkTest {

class ScriptedKeys {
public:
    explicit ScriptedKeys(std::deque<int> keys) : keys_(std::move(keys)) {
        Tesk::Hooks().now = [] { return timeval{1000000, 0}; };
        Tesk::Hooks().wait = [this](const timeval*) {
            auto* dialog = dynamic_cast<Tesk::Dialog*>(Tesk::CurrentWindow());
            titles.push_back(dialog ? dialog->title() : std::string());
            if (keys_.empty()) throw std::runtime_error("the test ran out of keys");
            int key = keys_.front();
            keys_.pop_front();
            return key;
        };
    }
    ~ScriptedKeys() { Tesk::ResetHooks(); }
    std::size_t left() const { return keys_.size(); }

    // The windows' titles, one per key read.
    std::vector<std::string> titles;

    // The titles of the messages shown over the dialog titled dialogTitle.
    std::vector<std::string> messages(const std::string& dialogTitle) const {
        std::vector<std::string> shown;
        std::string previous = dialogTitle;
        for (const auto& t : titles) {
            if (t != dialogTitle && t != previous) shown.push_back(t);
            previous = t;
        }
        return shown;
    }

private:
    std::deque<int> keys_;
};

// The keys that type text.
inline std::deque<int> Typed(const std::string& text) {
    return {text.begin(), text.end()};
}

inline std::deque<int> Keys(std::initializer_list<std::deque<int>> parts) {
    std::deque<int> all;
    for (const auto& p : parts) all.insert(all.end(), p.begin(), p.end());
    return all;
}

inline std::deque<int> Repeat(int key, int times) {
    return std::deque<int>(static_cast<std::size_t>(times), key);
}

}  // namespace NetworkTest
