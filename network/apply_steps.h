// The parts of applying the management network that live in their own files:
// the run every step shares (its flags and the guard that turns a host failure
// into a log line and an error dialog), the adapters and VLAN step, and the
// DNS steps. Internal to network/; the screens call network/apply_changes.h.
#pragma once

#include <functional>
#include <string>

#include "host/host_context.h"
#include "hostctl/network.h"
#include "network/pending_config.h"

namespace Tesk {

class Window;

// One application of the pending configuration.
struct ApplyRun {
    Window* opener;
    const HostContext& host;
    PendingNetworkConfig& pending;

    bool uplinksChanged = false;
    bool vlanChanged = false;
    bool renewIpv4 = false;
    bool renewIpv6 = false;
    // The interface's IPv4 settings were written (the summary is rebuilt).
    bool ipv4Rewritten = false;

    // Runs step. When the host fails it, the message is prefix with the
    // failure's text in place of its "%s" (appended when it has none); it is
    // logged at error level and shown in an error dialog over opener. True
    // when the step ran through.
    bool Guard(const char* prefix, const std::function<void()>& step);
};

// The active uplinks of the management port group and its VLAN; nothing on a
// distributed switch. Sets uplinksChanged and vlanChanged.
void ApplyAdaptersAndVlan(ApplyRun& run);

// Host name and name servers (unless DNS comes from DHCP), the search
// domains, and saving the DNS settings; each its own guarded group.
void ApplyDnsSettings(ApplyRun& run, HostCtl::Network::DnsConfig& dns);

}  // namespace Tesk
