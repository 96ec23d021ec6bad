#include "admin/keyboard_dialog.h"

#include "hostctl/try_call.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/items.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr DialogSize kSize{76, 18, 6};

// A layout's row: <Space> is the dialog's, which moves the one choice.
class LayoutItem : public RadioItem {
public:
    using RadioItem::RadioItem;
    KeyResult handleKey(int) override { return KeyResult::Ignored(); }
};

}  // namespace

KeyboardDialog::KeyboardDialog(Window* opener, const HostCtl::Backend& host)
    : FormDialog(opener, kSize), host_(host) {
    setTitle(str(StrId::ConfigureKeyboard));
    setBody(str(StrId::KeyboardLayoutHelp));
    setFooter(Footer::kSelectToggleOkCancel);
    auto info = [this] { return host_.GetSystemInfo(); };
    layouts_ = TryHost("Getting keyboard layouts failed: %s", [&] {
                   return info()->GetKeyboardLayouts();
               }).value_or(std::vector<std::string>{});
    const std::string current = TryHost("Getting keyboard layout failed: %s", [&] {
                                    return info()->GetKeyboardLayout();
                                }).value_or("");
    for (std::size_t i = 0; i < layouts_.size(); ++i) {
        const bool isCurrent = layouts_[i] == current;
        if (isCurrent) chosen_ = i;
        choices_.push_back(&items().emplace<LayoutItem>(EscapeHostText(layouts_[i]), isCurrent));
    }
    if (!choices_.empty()) items().selectByOrdinal(static_cast<int>(chosen_));
}

KeyResult KeyboardDialog::onKey(int key) {
    if (key != ' ' || choices_.empty()) return KeyResult::Ignored();
    for (std::size_t i = 0; i < choices_.size(); ++i) {
        if (choices_[i] != items().selected()) continue;
        choices_[chosen_]->setChosen(false);
        choices_[i]->setChosen(true);
        chosen_ = i;
        return KeyResult::Redraw();
    }
    return KeyResult::Handled();
}

KeyResult KeyboardDialog::accept() {
    if (layouts_.empty()) return KeyResult::Leave(0);
    const std::string& layout = layouts_[chosen_];
    auto info = [this] { return host_.GetSystemInfo(); };
    const bool applied =
        TryHost("Loading keyboard mappings failed: %s",
                [&] { info()->LoadKeyboardMappings(layout); }) &&
        TryHost("Setting keyboard layout failed: %s", [&] { info()->SetKeyboardLayout(layout); });
    if (!applied) return KeyResult::Leave(0);
    Platform::Log(LOG_INFO, "Keyboard Layout changed to %s", layout.c_str());
    return KeyResult::Leave(1);
}

}  // namespace Tesk
