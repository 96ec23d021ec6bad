// "View System Logs": the logs the host has, numbered; a digit opens that log
// in the pager.
#include "hostctl/try_call.h"
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
        shown_ = TryHost("Getting the host's logs failed: %s", [&] {
                     return c.host.backend.GetSystemLogs()->GetLogs();
                 }).value_or(std::vector<HostCtl::Logs::LogSource>{});
        // A host that keeps none of the logs the backend knows says so
        // rather than offering keys that open nothing.
        if (shown_.empty()) return "No logs that the console can show are kept on this host.";
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
        if (wanted < 1 || wanted > shown_.size()) return true;
        const auto log = TryHost("Preparing the log failed: %s", [&] {
            return c.host.backend.GetSystemLogs()->PrepareLog(shown_[wanted - 1].id);
        });
        if (log && *log) ViewLog(c.menu, (*log)->HostPath());
        return true;
    }

private:
    std::vector<HostCtl::Logs::LogSource> shown_;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeLogsEntry() {
    return std::make_unique<LogsEntry>();
}

}  // namespace Tesk
