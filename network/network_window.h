// "Configure Management Network": the management interface's settings read
// from the host once, edited in six dialogs as a pending configuration, shown
// topic by topic in the right pane, and handed to the apply step when the
// administrator leaves and agrees, with the host's current values for every
// field the window did not change. Nothing reaches the host while the window
// is open.
#pragma once

#include <cstdint>
#include <optional>

#include "host/host_context.h"
#include "network/network_fields.h"
#include "network/network_summary.h"
#include "network/pending_config.h"
#include "ui/pane_window.h"

namespace Tesk {

// Reads the management interface's settings. None when they cannot be read:
// each failure is logged, and a host without a management interface also gets
// an error dialog over opener.
std::optional<PendingNetworkConfig> LoadPendingNetworkConfig(Window* opener,
                                                             const HostContext& host);

class NetworkWindow : public PaneWindow {
public:
    NetworkWindow(Window* opener, const HostContext& host, PendingNetworkConfig pending);

    const PendingNetworkConfig& pending() const { return pending_; }

protected:
    // Asks whether to apply when something changed; Cancel stays.
    bool leave() override;

private:
    // A row's pane: its title and the summary of its topic (adapters are
    // described as the host names them).
    PaneText topicPane(std::uint32_t title, NetworkTopic topic) const;
    void changeAdapters();
    void changeVlan();
    void changeIpv4();
    void changeIpv6();
    void changeDns();
    void changeSuffixes();

    const HostContext& host_;
    PendingNetworkConfig pending_;
    // What the host held when the window read it: leaving writes only the
    // fields that differ from it (network/host_changes.h).
    NetworkValues read_;
};

// Loads the settings and runs the window over opener; false when the window
// could not be opened.
bool OpenNetworkWindow(Window* opener, const HostContext& host);

}  // namespace Tesk
