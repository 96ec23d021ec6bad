// "View System Logs": the logs that exist, numbered; a digit opens that log
// in the pager.
#include "session/log_viewer.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class LogsEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(StrId::ViewSystemLogs); }
    std::string pane(MenuContext& c) override {
        shown_ = AvailableLogs();
        std::string text;
        int number = 0;
        for (const auto& log : shown_)
            text += "{color:white}<" + std::to_string(++number) + "> {color:light-grey}" +
                    EscapeHostText(log.title) + "{/color}\n";
        return text + c.menu.str(StrId::ViewSystemLogsHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kLogOut; }
    bool key(MenuContext& c, int key) override {
        if (key < '0' || key > '9') return false;
        // The numbers the pane shows.
        const std::size_t wanted = static_cast<std::size_t>(key - '0');
        if (wanted >= 1 && wanted <= shown_.size()) ViewLog(c.menu, shown_[wanted - 1].path);
        return true;
    }

private:
    std::vector<LogFile> shown_;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeLogsEntry() {
    return std::make_unique<LogsEntry>();
}

}  // namespace Tesk
