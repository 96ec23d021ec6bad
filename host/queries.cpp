#include "host/queries.h"

#include <syslog.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "host/runner.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"

namespace Tesk {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

namespace {

// The number of a "pnic%d" name.
std::optional<int> PnicNumber(const std::string& name) {
    int number = 0;
    if (std::sscanf(name.c_str(), "pnic%d", &number) != 1) return std::nullopt;
    return number;
}

}  // namespace

std::unique_ptr<HN::ZrkNic> GetManagementInterface(const HostCtl::Backend& host) {
    auto nic = TryHost("Getting the management interface failed: %s", [&host] {
        auto info = host.GetNetworkInfo();
        info->UpdateManagementInterface();
        return info->GetManagementInterface();
    });
    return nic ? std::move(*nic) : nullptr;
}

bool IsManagementOnQds(const HostCtl::Backend& host) {
    auto nic = GetManagementInterface(host);
    if (!nic) {
        Platform::Log(LOG_ERR, "Could not locate the management interface");
        return false;
    }
    return TryHost(
               "Could not determine if a qDS was in use: %s",
               [&] { return nic->GetPortConnection().GetType() == HN::ConnectionType::QdsPort; })
        .value_or(false);
}

bool ComparePnicNames(const std::string& a, const std::string& b) {
    auto na = PnicNumber(a), nb = PnicNumber(b);
    if (na && nb) return *na < *nb;
    return a < b;  // byte order; a prefix sorts first
}

bool GetPnicNames(const HostCtl::Backend& host, std::vector<std::string>& names) {
    const bool listed = TryHost("Getting physical nics failed: %s", [&] {
        for (const auto& pnic : host.GetNetworkInfo()->GetPnics(HN::PnicKind::All))
            names.push_back(pnic->GetName());
    });
    if (!listed) return false;
    std::sort(names.begin(), names.end(), ComparePnicNames);
    return true;
}

std::optional<PnicSummary> GetPnicSummary(const HostCtl::Backend& host, const std::string& name,
                                          const UplinkOwnerMap& owners) {
    try {
        auto pnic = host.GetPnic(name);
        if (pnic->IsStale()) pnic->Refresh();
        PnicSummary s;
        s.name = name;
        auto pci = pnic->GetPciDevice();
        s.hardwareLabel = pci ? CollapseWhitespace(pci->GetDescription()) : std::string();
        if (s.hardwareLabel.empty()) s.hardwareLabel = "N/A";
        s.macAddress = pnic->GetMacAddress().GetStringAddress();
        s.connectionStatus = pnic->IsLinkUp() ? "Connected" : "Disconnected";
        auto owner = owners.find(name);
        if (owner != owners.end()) s.usedBy = owner->second;
        return s;
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting physical nic %s failed: %s", name.c_str(), e.what());
        return std::nullopt;
    }
}

bool BuildUplinkOwnerMap(const HostCtl::Backend& host, const std::vector<std::string>& names,
                         UplinkOwnerMap& owners) {
    std::unique_ptr<HN::VirtualSwitchInfo> info;
    auto claim = [&](const std::string& nic, const std::string& owner) {
        if (std::find(names.begin(), names.end(), nic) != names.end()) owners[nic] = owner;
    };
    const bool standard = TryHost("Scanning virtual switches failed: %s", [&] {
        info = host.GetVirtualSwitchInfo();
        for (const auto& s : info->GetVirtualSwitches(HN::PortsetKind::All))
            for (const auto& uplink : s->GetUplinks()) claim(uplink, s->GetName());
    });
    if (!standard) return false;
    const bool distributed = TryHost("Scanning qDS switches failed: %s", [&] {
        for (const auto& q : info->GetQdsSwitches())
            for (const auto& [uplink, port] : q->GetUplinkMap()) claim(uplink, q->GetName());
    });
    return distributed;
}

bool GetStandardSwitches(const HostCtl::Backend& host, std::vector<SwitchSummary>& switches) {
    return TryHost("Gathering standard virtual switch list failed: %s", [&] {
        for (const auto& s :
             host.GetVirtualSwitchInfo()->GetVirtualSwitches(HN::PortsetKind::All)) {
            SwitchSummary summary;
            summary.portGroups = s->GetPortGroups();
            summary.name = s->GetName();
            summary.uplinks = s->GetUplinks();
            summary.numPorts = s->GetNumPorts();
            summary.usedPorts = s->GetUsedPorts();
            summary.configuredPorts = s->GetConfiguredPorts();
            switches.push_back(std::move(summary));
        }
    });
}

std::string JoinNames(const std::vector<std::string>& names, const char* separator) {
    std::string joined;
    for (const auto& n : names) joined += (joined.empty() ? "" : separator) + n;
    return joined;
}

}  // namespace Tesk
