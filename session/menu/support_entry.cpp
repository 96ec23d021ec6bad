// "View Support Information": the host's support file, read when the menu
// opens, in the pane.
#include <fstream>

#include "platform/hostroot.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

constexpr const char kSupportFile[] = "/etc/brelt/support";

class SupportEntry : public MenuEntry {
public:
    SupportEntry() {
        std::ifstream support(Platform::HostPath(kSupportFile));
        for (std::string line; std::getline(support, line);) text_ += line + "\n";
    }
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::ViewSupportInformation);
    }
    std::string pane(MenuContext&) override { return text_; }
    std::string footer(MenuContext&) override { return {}; }

private:
    std::string text_;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeSupportEntry() {
    return std::make_unique<SupportEntry>();
}

}  // namespace Tesk
