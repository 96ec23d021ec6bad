// Key storms into a form dialog and its item list: arbitrary keys (printable
// and control bytes, curses key codes, characters beyond ASCII, the input
// wait's events, minutes passing) through the one key reader, at the screen
// sizes a console meets, with nested dialogs and a list longer than its rows.
//
// Byte 0 picks the screen size, byte 1 the dialog's size; then every key is
// two bytes: a kind and a value. When the bytes run out the dialog is sent
// <Esc> until it ends.
#include <curses.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "tests/support/curses_screen.h"
#include "ui/carousel.h"
#include "ui/dialog.h"
#include "ui/form_dialog.h"
#include "ui/input_items.h"
#include "ui/items.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/palette.h"
#include "ui/terminal.h"
#include "ui/window.h"

namespace {

using namespace Tesk;

struct Size {
    int columns, lines;
};
constexpr Size kScreens[] = {{80, 25}, {10, 5}, {33, 7}, {41, 13}, {132, 43}};
constexpr DialogSize kDialogs[] = {{60, 16, 6}, {70, 10, 7}, {30, 9, 4}, {60, 13, 6}};

constexpr int kCursesKeys[] = {KEY_UP,   KEY_DOWN, KEY_LEFT,  KEY_RIGHT, KEY_HOME,      KEY_END,
                               KEY_IC,   KEY_DC,   KEY_PPAGE, KEY_NPAGE, KEY_BACKSPACE, KEY_F(1),
                               KEY_F(2), KEY_F(3), KEY_F(4),  KEY_F(5),  KEY_F(10),     KEY_F(12)};
constexpr int kEvents[] = {EventNone, EventTimeout, EventSmartCard, EventRestart};

// A session whose idle timeout is one minute: minutes passing end the dialog.
class FuzzSession : public KeySession {
public:
    int idleTimeout() const override { return 60; }
    bool holdRestart() override { return true; }
    void cardChanged() override {}
};

// The bytes as keys for the key reader, and a clock they move.
class KeySource {
public:
    KeySource(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    int next() {
        if (at_ + 1 >= size_) {
            // <Esc> cancels a form, <Enter> closes a message: together they
            // end every dialog, or the storm found one that never ends.
            if (++drained_ > 50) throw std::runtime_error("the dialog never ended");
            return drained_ % 2 ? KeyEscape : KeyEnter;
        }
        const std::uint8_t kind = data_[at_], value = data_[at_ + 1];
        at_ += 2;
        switch (kind % 8) {
            case 0:
            case 1:
                return 0x20 + value % 0x5f;  // printable ASCII
            case 2:
                return value % 0x20 == 0x1b ? KeyEnter : value % 0x20;  // control bytes
            case 3:
                return kCursesKeys[value % std::size(kCursesKeys)];
            case 4: {  // a character beyond ASCII: Latin, wide, combining, odd
                static constexpr char32_t kBases[] = {0xA0, 0x4E00, 0x300, 0x1F600, 0xFFF0, 0x80};
                return CharKey(kBases[value % std::size(kBases)] + value / 6);
            }
            case 5:
                return kEvents[value % std::size(kEvents)];
            case 6:
                seconds_ += value;  // time passes: dimming, the idle timeout
                return EventTimeout;
            default:
                return value % 3 == 0 ? KeyEscape : (value % 3 == 1 ? KeyTab : ' ');
        }
    }
    timeval now() const { return timeval{seconds_, 0}; }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 2;
    int drained_ = 0;
    long seconds_ = 1000000;
};

struct Sample {
    std::string label;
    std::string GetLabel() const { return "NIC: " + label; }
    std::string GetTitle() const { return "Details"; }
    std::string GetDetails() const { return "Name: " + label + "\n{color:red}red{/color}"; }
    std::string GetFooter() const { return "<Enter> OK"; }
};

// A form with every item kind and keys of its own: F5 opens a message over
// it, D the carousel's details, F6 switches the masked field, F2 gives the
// first field a new value.
class StormForm : public FormDialog {
public:
    explicit StormForm(DialogSize size) : FormDialog(nullptr, size) {
        setTitle("Storm \xE2\x82\xAC");
        setBody("A body long enough to wrap in the narrower dialogs of the storm.");
        setFooter("{align:right}<Enter> OK  <Esc> Cancel{/align}");
        ItemList& list = items();
        name_ = &list.emplace<InputItem>("Name:", "root", 20);
        secret_ = &list.emplace<MaskedInputItem>("Password:", "", -1);
        list.emplace<NumericInputItem>("Minutes", "30", 6, 4);
        list.emplace<FilteredInputItem>("IPv4", "10.0.0.1", 15, CharFilters::DigitsAndDots);
        list.emplace<CheckItem>("Check", false, 2);
        list.emplace<RadioItem>("One", true, &group_);
        list.emplace<RadioItem>("Two", false, &group_);
        list.emplace<LabelItem>("Disabled", true).setEnabled(false);
        carousel_ = &list.emplace<CarouselRadioItem<Sample>>(
            std::vector<Sample>{{"zrk0"}, {"zrk1"}, {"\xE6\xBC\xA2"}}, true);
        list.emplace<LabelItem>("");
        list.emplace<InputItem>("Dark", "a long value that scrolls", 8).setLightHighlight(false);
    }

protected:
    KeyResult onKey(int key) override {
        if (key == KEY_F(5)) {
            MessageDialog message(this, "Nested", "A message over the form.");
            Run(message);
            return KeyResult::Redraw();
        }
        if (key == 'd' && items().selected() == carousel_) {
            carousel_->showDetails(this);
            return KeyResult::Redraw();
        }
        if (key == KEY_F(6)) {
            secret_->setMasked(!secret_->masked());
            return KeyResult::Redraw();
        }
        if (key == KEY_F(2)) {
            name_->setValue("x\xC3\xBC\xE2\x82\xAC\xE6\xBC\xA2y");
            return KeyResult::Redraw();
        }
        return KeyResult::Ignored();
    }

private:
    RadioGroup group_;
    InputItem* name_ = nullptr;
    InputItem* secret_ = nullptr;
    CarouselRadioItem<Sample>* carousel_ = nullptr;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TeskTest::OpenCursesScreen();
    if (size < 2) return 0;
    static FuzzSession session;
    SetKeySession(&session);
    static int lines = 0, columns = 0;
    const Size screen = kScreens[data[0] % std::size(kScreens)];
    if (screen.lines != lines || screen.columns != columns) {
        resizeterm(screen.lines, screen.columns);
        lines = screen.lines;
        columns = screen.columns;
    }
    SetCannotChangeColours(data[1] & 0x80);
    SetHighContrastPalette(data[1] & 0x40);
    SetCurrentWindow(nullptr);

    KeySource keys(data, size);
    Hooks().now = [&keys] { return keys.now(); };
    Hooks().wait = [&keys](const timeval*) { return keys.next(); };
    try {
        StormForm form(kDialogs[data[1] % std::size(kDialogs)]);
        Run(form);
    } catch (const TeskTimeout&) {
        // The idle timeout ended it, as it may any dialog.
    } catch (const ExitRequest&) {
        // Not sent by this storm, but a dialog may end the console.
    }
    ResetHooks();
    SetCursorVisible(false);
    return 0;
}
