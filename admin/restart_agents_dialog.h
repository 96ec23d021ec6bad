// Restarting the management agents: a confirmation on <F11>, optionally the
// live-core collection on its own thread, then the services stopped and
// started, each step shown as it runs (finished steps grey, the running one
// black). The screen says "Done." whatever the service commands return. It is
// a progress dialog (so no wait notice covers it) that draws its own steps
// below its check item.
#pragma once

#include <memory>
#include <string>

#include "hostctl/backend.h"
#include "ui/items.h"
#include "ui/progress_dialog.h"
#include "ui/textarea.h"

namespace Tesk {

class RestartAgentsDialog : public ProgressDialog {
public:
    RestartAgentsDialog(Window* opener, const HostCtl::Backend& host);
    // 1 after the restart (once <Enter> closed the final screen), 0 on <Esc>.
    int run() override;

private:
    void restart();
    void show(const std::string& text);

    const HostCtl::Backend& host_;
    ItemList items_;
    CheckItem* collect_;
    std::unique_ptr<TextArea> progress_;
};

}  // namespace Tesk
