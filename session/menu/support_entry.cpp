// "View Support Information": the host's support file, read when the menu
// opens, in the pane.
#include <cerrno>
#include <cstring>

#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

constexpr const char kSupportFile[] = "/etc/brelt/support";

// The file's text as it shows in the pane: its lines, each ended by a line
// feed. Anything but a regular file (a FIFO would hold the menu until some
// writer came) is refused and logged; a missing file is simply empty.
std::string ReadSupportText() {
    std::string failure;
    const auto text = Platform::ReadRegularFile(Platform::HostPath(kSupportFile), &failure);
    if (!text) {
        if (failure != std::strerror(ENOENT))
            Platform::Log(LOG_ERR, "Reading support information %s failed: %s", kSupportFile,
                          failure.c_str());
        return {};
    }
    std::string lines = *text;
    if (!lines.empty() && lines.back() != '\n') lines += '\n';
    return lines;
}

class SupportEntry : public MenuEntry {
public:
    SupportEntry() : text_(EscapeHostLines(ReadSupportText())) {}
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
