// What a key handler answers for one key: not its business, taken, taken with
// the window to be drawn again, or the window is done with a result.
#pragma once

#include <ostream>

namespace Tesk {

class KeyResult {
public:
    enum class Kind { Ignored, Handled, Redraw, Leave };

    // Not this handler's key: the next handler gets it.
    static constexpr KeyResult Ignored() { return {Kind::Ignored, 0}; }
    // Taken; whatever changed is already on the screen.
    static constexpr KeyResult Handled() { return {Kind::Handled, 0}; }
    // Taken; the loop runs the window's after-key hook to show the new state.
    static constexpr KeyResult Redraw() { return {Kind::Redraw, 0}; }
    // Taken; the loop ends and the window's run() returns result.
    static constexpr KeyResult Leave(int result) { return {Kind::Leave, result}; }

    constexpr KeyResult() = default;

    constexpr Kind kind() const { return kind_; }
    // The result of a Leave answer (0 for the others).
    constexpr int result() const { return result_; }
    constexpr bool ignored() const { return kind_ == Kind::Ignored; }
    constexpr bool leaves() const { return kind_ == Kind::Leave; }
    // True when the key was taken, whatever the answer.
    constexpr explicit operator bool() const { return !ignored(); }

    friend constexpr bool operator==(const KeyResult&, const KeyResult&) = default;

    friend std::ostream& operator<<(std::ostream& out, const KeyResult& r) {
        switch (r.kind_) {
            case Kind::Ignored:
                return out << "Ignored";
            case Kind::Handled:
                return out << "Handled";
            case Kind::Redraw:
                return out << "Redraw";
            case Kind::Leave:
                return out << "Leave(" << r.result_ << ")";
        }
        return out;
    }

private:
    constexpr KeyResult(Kind kind, int result) : kind_(kind), result_(result) {}

    Kind kind_ = Kind::Ignored;
    int result_ = 0;
};

}  // namespace Tesk
