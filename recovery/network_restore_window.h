// "Network Restore Options": the six ways to repair a host that has lost its
// management network, each opening its dialog.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/pane_window.h"

namespace Tesk {

class NetworkRestoreWindow : public PaneWindow {
public:
    // Asks the host once whether the management interface is on a distributed
    // switch and whether the network-virtualisation agent 3 is installed; the
    // rows that need them stay grey for the window's life.
    explicit NetworkRestoreWindow(Window* opener);

private:
    PaneText describe(int row) override;
    void enter(int row) override;

    // Greys a row out for good: disabled, its text in dark-grey.
    void disableRow(int row);
    // The factory restore; a host failure escaping it is logged and shown.
    void restoreNetworkSettings();

    // The string id of each row, in display order.
    std::vector<std::uint32_t> ids_;
    // The window's own footer stands in the pane until the selection moves
    // (after it opens and after each dialog).
    bool ownFooter_ = true;
    int describedRow_ = -1;
};

}  // namespace Tesk
