// "Network Restore Options": the six ways to repair a host that has lost its
// management network, each opening its dialog.
#pragma once

#include <string>
#include <vector>

#include "host/host_context.h"
#include "ui/pane_window.h"

namespace Tesk {

class NetworkRestoreWindow : public PaneWindow {
public:
    // Asks the host once whether the management interface is on a distributed
    // switch, whether the network-virtualisation agent 3 is installed and
    // whether it makes more standard switches; the rows that need them stay
    // grey for the window's life (a row the host does not offer can be
    // selected, does nothing, and its pane says why).
    NetworkRestoreWindow(Window* opener, const HostContext& host);

private:
    // One row: its string id (the description is id + 6), its footer, when
    // it can be chosen and what <Enter> opens.
    struct Row;
    static const std::vector<Row>& Rows();

    PaneText describe(int row) override;
    void enter(int row) override;

    // Greys a row out for good: disabled, its text in dark-grey.
    void disableRow(int row);
    // Its text in dark-grey only.
    void greyRow(int row);
    void createStandardSwitch(int row);
    void createPortGroup(int row);
    void migrateZrknic(int row);
    // The factory restore; a host failure escaping it is logged and shown.
    void restoreNetworkSettings(int row);
    // Greys its own row after <F11>.
    void restoreStandardSwitch(int row);
    void restoreQds(int row);

    const HostContext& host_;
    // The window's own footer stands in the pane until the selection moves
    // (after it opens and after each dialog).
    bool ownFooter_ = true;
    int describedRow_ = -1;
    // Per row: why the host does not offer it; empty when it does.
    std::vector<std::string> notOffered_;
};

}  // namespace Tesk
