// "System Customization": the menu of a logged-in user, with a description of
// the selected entry on the right and the system log viewer.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/dialog.h"
#include "ui/items.h"
#include "ui/textarea.h"

namespace Tesk {

class RootWindow : public Frame {
public:
    explicit RootWindow(Window* opener);
    ~RootWindow() override;
    // The key loop; returns when the user presses <Esc>.
    int run() override;

    // The string number of the selected entry (3 for a separator).
    std::uint32_t selectedEntry() const;

    // The logs of the viewer, in their fixed order.
    struct Log {
        const char* title;
        const char* path;  // host path
        bool available = false;
    };
    static std::vector<Log> LogTable();

protected:
    // Fills the right pane and the footers for the selected entry.
    virtual void describe();

private:
    void buildMenu();
    void readLockdown();
    void openEntry(std::uint32_t entry);
    void openLog(const std::string& hostPath);
    std::string logList();
    std::string managementSummary();

    std::unique_ptr<Window> left_;
    std::unique_ptr<Window> right_;
    std::unique_ptr<TextArea> title_;
    std::unique_ptr<ItemList> menu_;
    std::unique_ptr<TextArea> leftFooter_;
    std::unique_ptr<TextArea> pane_;
    std::unique_ptr<TextArea> status_;
    std::unique_ptr<TextArea> footer_;
    std::vector<std::uint32_t> entries_;
    std::vector<Log> logs_;
    std::string support_;
    bool lockdown_ = false;
    bool managementUsable_ = false;
};

// Runs the pager on a log with the terminal handed over to it, and takes the
// terminal back afterwards. pager is the host path of the pager program.
// Returns the pager's exit status, or -1 when it could not be run.
int ViewWithPager(const std::string& pagerHostPath, const std::string& logHostPath);

}  // namespace Tesk
