// tesk-gallery: a screen to try the toolkit's widgets with real keys. It starts
// through the console's own curses set-up, so colours, keys and dimming behave
// exactly as in the console, and it picks its host backend the same way.
#include <memory>
#include <string>
#include <vector>

#include "app/startup.h"
#include "ui/carousel.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/form_dialog.h"
#include "ui/input_items.h"
#include "ui/items.h"
#include "ui/key_loop.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/palette.h"
#include "ui/progress_dialog.h"
#include "ui/string_ids.h"

namespace {

using namespace Tesk;

// A made-up kernel NIC for the carousel.
struct SampleNic {
    std::string name, mac, portset, portgroup;
    std::string GetLabel() const { return "Zerkel NIC Name: " + name; }
    std::string GetTitle() const { return "Zerkel NIC Details"; }
    std::string GetDetails() const {
        return "Name: " + name + "\nMAC Address: " + mac + "\nPortset: " + portset +
               "\nPortgroup: " + portgroup;
    }
    std::string GetFooter() const { return std::string(Footer::kOk) + "  "; }
};

using NicCarousel = CarouselRadioItem<SampleNic>;

// Every item kind in one list, more items than rows so that it scrolls.
class ItemsDialog : public FormDialog {
public:
    explicit ItemsDialog(Window* opener) : FormDialog(opener, 70, 22, 7) {
        setIdleTimeout(false);
        setTitle("Widget Gallery: Items");
        setBody(
            "Up/Down select, Space toggles, type into fields (Home, End, Left, Right, Backspace, "
            "Delete). On the carousel: Left/Right change the entry, D shows its details.");
        setFooter(Footer::kSelectToggleOkCancel);
        ItemList& list = items();
        list.emplace<LabelItem>("Check boxes");
        list.emplace<CheckItem>("Enable lockdown mode", false);
        list.emplace<CheckItem>("Collect extra troubleshooting information", true, 2);
        list.emplace<LabelItem>("");
        list.emplace<RadioItem>("Disable IPv4 configuration", false, &ipv4_);
        list.emplace<RadioItem>("Use dynamic IPv4 address", true, &ipv4_);
        list.emplace<RadioItem>("Set static IPv4 address:", false, &ipv4_);
        list.emplace<FilteredInputItem>("IPv4 Address", "192.168.20.15", 20,
                                        CharFilters::DigitsAndDots);
        list.emplace<FilteredInputItem>("Subnet Mask", "255.255.255.0", 20,
                                        CharFilters::DigitsAndDots);
        list.emplace<FilteredInputItem>("Default Gateway", "192.168.20.1", 20,
                                        CharFilters::DigitsAndDots);
        list.emplace<MaskedInputItem>("Password:", "secret", -1);
        auto& host = list.emplace<InputItem>("Hostname (dark field)",
                                             "a-rather-long-host-name.example.test", 16);
        host.setLightHighlight(false);
        list.emplace<NumericInputItem>("Idle timeout (minutes, digits only)", "30", 6, 4);
        list.emplace<LabelItem>("Unavailable choice (disabled, skipped)", true).setEnabled(false);
        list.emplace<LabelItem>("");
        // A group of its own: Space keeps its one choice.
        carousel_ = &list.emplace<NicCarousel>(
            std::vector<SampleNic>{{"zk0", "02:5a:4b:01:aa:10", "zSwitch0", "Management Network"},
                                   {"zk1", "02:5a:4b:01:aa:11", "zSwitch1", "Storage"},
                                   {"zk2", "02:5a:4b:01:aa:12", "qDS-lab", "Migration"}},
            true, &nics_);
        list.emplace<LabelItem>("");
        list.emplace<LabelItem>("{color:red}Red text{/color} and {color:white}white text{/color}");
        list.emplace<LabelItem>("{align:right}a right-aligned line{/align}");
    }

protected:
    KeyResult onKey(int key) override {
        if (key == KeyTab) return items().moveKey(KEY_DOWN);
        if ((key == 'd' || key == 'D') && items().selected() == carousel_) {
            carousel_->showDetails(this);
            return KeyResult::Redraw();
        }
        return KeyResult::Ignored();
    }

    // <Enter> shows the values and stays.
    KeyResult accept() override {
        std::string text;
        for (std::size_t i = 0; i < items().size(); ++i) {
            if (auto* input = dynamic_cast<InputItem*>(&items().at(i)))
                text += input->label() + " " +
                        (input->masked() ? std::string(input->length(), '*')
                                         : EscapeMarkup(input->value())) +
                        "\n";
        }
        NotificationDialog summary(this, "Values entered", text, 70, 14, 11);
        Run(summary);
        return KeyResult::Redraw();
    }

private:
    RadioGroup ipv4_;
    RadioGroup nics_;
    NicCarousel* carousel_ = nullptr;
};

std::string LongText() {
    std::string text =
        "{align:center}{color:white}A long text that scrolls by page{/color}{/align}\n\n"
        "This pane holds more text than fits. Page Down and Page Up move through it one page at a "
        "time; the last row names the keys that still lead somewhere.\n\n";
    const char* colours[] = {"white", "yellow", "red", "light-grey", "black", "purple"};
    for (int i = 1; i <= 24; ++i) {
        const char* colour = colours[i % 6];
        text +=
            "{align:padding:12}Line " + std::to_string(i) + "{/align}{color:" + colour + "}" +
            colour + "{/color} {align:right}wrapped words and a long word: " +
            "abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789{/align}\n";
    }
    text += "\n{align:right}The end.{/align}";
    return text;
}

class LongTextDialog : public Dialog {
public:
    explicit LongTextDialog(Window* opener) : Dialog(opener, 76, 23, 19) {
        bodyArea().setScrollHints(true);
    }
    int run() override {
        setTitle("Widget Gallery: Long Text");
        setBody(LongText());
        setFooter(Footer::kOk);
        return RunKeyLoop(*this, {.allowIdleTimeout = false, .handler = [this](int key) {
                                      if (key == KeyEnter || key == KeyEscape)
                                          return KeyResult::Leave(1);
                                      return bodyArea().handleScrollKey(key) ? KeyResult::Handled()
                                                                             : KeyResult::Ignored();
                                  }});
    }
};

// A confirmation, then a progress dialog whose steps succeed or fail as
// asked.
void ConfirmAndProgress(Window* opener) {
    ConfirmDialog ask(opener, {60, 12, 6}, "Widget Gallery: Confirm",
                      "Y runs the steps and lets them succeed, N lets the second one fail. "
                      "Every other key but Esc is ignored.",
                      Footer::kYesNoCancel, ConfirmDialog::YesNo());
    ask.setQuestion("Run the steps now?");
    const int answer = Run(ask);
    if (answer == ConfirmDialog::kCancelled) return;
    ProgressDialog progress(opener, {60, 12, 6}, "Widget Gallery: Progress",
                            "Each step is shown as it ends.", [answer](ProgressDialog& p) {
                                p.add("Checking the host.");
                                p.done();
                                p.add("Applying the change.");
                                answer == ConfirmDialog::kYes ? p.done() : p.failed();
                                p.waitForEnter();
                                return 1;
                            });
    Run(progress);
}

// The bottom window: a menu of what there is to try.
class GalleryWindow : public Frame {
public:
    GalleryWindow() : Frame(nullptr, 0, 0, COLS, LINES, ColourBlack, ColourWhite) {
        upper_ = std::make_unique<Window>(this, 0, 0, COLS, LINES / 2, ColourDarkGrey, ColourWhite);
        lower_ = std::make_unique<Window>(this, 0, LINES / 2, COLS, (LINES + 1) / 2, ColourYellow,
                                          ColourWhite);
        title_ = std::make_unique<TextArea>(upper_.get(), 8, 3, COLS - 16, 2, ColourWhite);
        menu_ = std::make_unique<TextArea>(lower_.get(), 8, 1, COLS - 16, lower_->height() - 3,
                                           ColourBlack);
        footer_ = std::make_unique<TextArea>(lower_.get(), 2, lower_->height() - 2, COLS - 4, 1,
                                             ColourBlack);
    }

    int run() override {
        show();
        return RunKeyLoop(*this, {.allowIdleTimeout = false,
                                  .handler = [this](int key) { return onKey(key); },
                                  .afterKey =
                                      [this] {
                                          clearok(curscr, TRUE);
                                          show();
                                      }});
    }

private:
    // Every key but the quitting ones shows the screen again.
    KeyResult onKey(int key) {
        if (key == KeyEscape || key == 'q' || key == 'Q') return KeyResult::Leave(0);
        if (key == KeyEnter || key == 'i' || key == 'I') {
            ItemsDialog dialog(this);
            Run(dialog);
        } else if (key == 't' || key == 'T') {
            LongTextDialog dialog(this);
            Run(dialog);
        } else if (key == 'n' || key == 'N') {
            NotificationDialog dialog(this, "Notification",
                                      "Only {color:black}<Enter>{/color} closes this dialog; "
                                      "Esc and every other key are ignored.");
            Run(dialog);
        } else if (key == 'm' || key == 'M') {
            MessageDialog dialog(this, StrId::AuthenticationFailed, StrId::InvalidLoginOrPassword);
            Run(dialog);
        } else if (key == 'c' || key == 'C') {
            ConfirmAndProgress(this);
        } else if (key == KEY_F(4) && !CannotChangeColours()) {
            SetHighContrastPalette(!HighContrastPalette());
        }
        return KeyResult::Redraw();
    }

    void show() {
        setActive(true);
        title_->setText(std::string("{align:center}TESK widget gallery{/align}\n{align:center}") +
                        strings().get(StrId::ProductLine) + "{/align}");
        menu_->setText(
            "{color:black}<Enter>{/color} {color:dark-grey}Items: check boxes, radio buttons, "
            "fields, a carousel{/color}\n"
            "{color:black}<T>{/color} {color:dark-grey}A long text that scrolls{/color}\n"
            "{color:black}<N>{/color} {color:dark-grey}Notification dialog{/color}\n"
            "{color:black}<M>{/color} {color:dark-grey}Message dialog from the string "
            "table{/color}\n"
            "{color:black}<C>{/color} {color:dark-grey}Confirm dialog, then a progress "
            "dialog{/color}\n"
            "{color:black}<F4>{/color} {color:dark-grey}High-contrast palette: {/color}" +
            std::string(HighContrastPalette() ? "on" : "off") +
            "\n\nWait a minute without a key to see the screen dim.");
        footer_->setText(
            "{color:black}<F4>{/color} {color:dark-grey}Palette{/color}{align:right}"
            "{color:black}<Esc>{/color} {color:dark-grey}Quit{/color}{/align}");
        redraw();
    }

    std::unique_ptr<Window> upper_;
    std::unique_ptr<Window> lower_;
    std::unique_ptr<TextArea> title_;
    std::unique_ptr<TextArea> menu_;
    std::unique_ptr<TextArea> footer_;
};

}  // namespace

int main(int argc, char** argv) {
    return Tesk::RunConsole(
        argc, argv, [](const Tesk::StartFacts&) { return std::make_unique<GalleryWindow>(); });
}
