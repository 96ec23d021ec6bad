#include "host/queries.h"

#include <syslog.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "host/runner.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

const char* const kSwitchRowHeader =
    "{align:padding:20}Device Name{/align}{align:padding:10}Uplinks{/align}{align:padding:15}Port "
    "Groups{/align}{align:padding:12}Used Ports{/align}{align:padding:16}Configured Ports{/align}";
const char* const kPnicRowHeader =
    "{align:padding:13}Device Name{/align}{align:padding:30}Hardware Label (MAC "
    "Address){/align}Status";

namespace {

// The number of a "pnic%d" name.
std::optional<int> PnicNumber(const std::string& name) {
    int number = 0;
    if (std::sscanf(name.c_str(), "pnic%d", &number) != 1) return std::nullopt;
    return number;
}

std::string Column(const std::string& text, int width) {
    return "{align:padding:" + std::to_string(width) + "}" + text + "{/align}";
}

std::string Count(std::int64_t n) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%ld", static_cast<long>(n));
    return buf;
}

}  // namespace

std::unique_ptr<HN::ZrkNic> GetManagementInterface() {
    try {
        auto info = HostCtl::TheBackend().GetNetworkInfo();
        info->UpdateManagementInterface();
        return info->GetManagementInterface();
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting the management interface failed: %s", e.what());
        return nullptr;
    }
}

bool IsManagementOnQds() {
    auto nic = GetManagementInterface();
    if (!nic) {
        Platform::Log(LOG_ERR, "Could not locate the management interface");
        return false;
    }
    try {
        return nic->GetPortConnection().GetType() == HN::ConnectionType::QdsPort;
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Could not determine if a qDS was in use: %s", e.what());
        return false;
    }
}

bool ComparePnicNames(const std::string& a, const std::string& b) {
    auto na = PnicNumber(a), nb = PnicNumber(b);
    if (na && nb) return *na < *nb;
    return a < b;  // byte order; a prefix sorts first
}

bool GetPnicNames(std::vector<std::string>& names) {
    try {
        for (const auto& pnic : HostCtl::TheBackend().GetNetworkInfo()->GetPnics(HN::PnicKind::All))
            names.push_back(pnic->GetName());
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting physical nics failed: %s", e.what());
        return false;
    }
    std::sort(names.begin(), names.end(), ComparePnicNames);
    return true;
}

std::optional<PnicSummary> GetPnicSummary(const std::string& name, const UplinkOwnerMap& owners) {
    try {
        auto pnic = HostCtl::TheBackend().GetPnic(name);
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

bool BuildUplinkOwnerMap(const std::vector<std::string>& names, UplinkOwnerMap& owners) {
    std::unique_ptr<HN::VirtualSwitchInfo> info;
    auto claim = [&](const std::string& nic, const std::string& owner) {
        if (std::find(names.begin(), names.end(), nic) != names.end()) owners[nic] = owner;
    };
    try {
        info = HostCtl::TheBackend().GetVirtualSwitchInfo();
        for (const auto& s : info->GetVirtualSwitches(HN::PortsetKind::All))
            for (const auto& uplink : s->GetUplinks()) claim(uplink, s->GetName());
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Scanning virtual switches failed: %s", e.what());
        return false;
    }
    try {
        for (const auto& q : info->GetQdsSwitches())
            for (const auto& [uplink, port] : q->GetUplinkMap()) claim(uplink, q->GetName());
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Scanning qDS switches failed: %s", e.what());
        return false;
    }
    return true;
}

bool GetStandardSwitches(std::vector<SwitchSummary>& switches) {
    try {
        for (const auto& s : HostCtl::TheBackend().GetVirtualSwitchInfo()->GetVirtualSwitches(
                 HN::PortsetKind::All)) {
            SwitchSummary summary;
            summary.portGroups = s->GetPortGroups();
            summary.name = s->GetName();
            summary.uplinks = s->GetUplinks();
            summary.numPorts = s->GetNumPorts();
            summary.usedPorts = s->GetUsedPorts();
            summary.configuredPorts = s->GetConfiguredPorts();
            switches.push_back(std::move(summary));
        }
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Gathering standard virtual switch list failed: %s", e.what());
        return false;
    }
    return true;
}

std::string JoinNames(const std::vector<std::string>& names) {
    std::string joined;
    for (const auto& n : names) joined += (joined.empty() ? "" : ",") + n;
    return joined;
}

std::string FitColumn(const std::string& text, int width) {
    if (static_cast<int>(text.size()) <= width - 2) return text;
    return text.substr(0, static_cast<std::size_t>(std::max(width - 5, 0))) + "...";
}

std::string FormatSwitchDetails(const SwitchSummary& s) {
    auto orNone = [](const std::string& t) { return t.empty() ? std::string("None") : t; };
    return "Number of ports: " + Count(s.numPorts) + "\nUsed ports: " + Count(s.usedPorts) +
           "\nConfigured ports: " + Count(s.configuredPorts) +
           "\nUplinks: " + orNone(JoinNames(s.uplinks)) +
           "\nPort groups: " + orNone(JoinNames(s.portGroups));
}

std::string FormatSwitchRow(const SwitchSummary& s) {
    return Column(FitColumn(s.name, 20), 20) + Column(FitColumn(JoinNames(s.uplinks), 10), 10) +
           Column(FitColumn(JoinNames(s.portGroups), 15), 15) + Column(Count(s.usedPorts), 12) +
           Column(Count(s.configuredPorts), 16) + "  ...";
}

std::string FormatPnicDetails(const PnicSummary& p) {
    return "Hardware Label: " + p.hardwareLabel + "\nMAC Address: " + p.macAddress +
           "\nConnection Status: " + p.connectionStatus +
           "\nUsed By: " + (p.usedBy.empty() ? std::string("None") : p.usedBy);
}

std::string FormatPnicRow(const PnicSummary& p) {
    std::string name = p.name.size() <= 11 ? p.name : p.name.substr(0, 8) + "...";
    std::string label =
        p.hardwareLabel.size() <= 14 ? p.hardwareLabel : p.hardwareLabel.substr(0, 11) + "...";
    std::string mac = p.macAddress;
    if (label.size() + mac.size() >= 26) {
        std::size_t keep = 22 - label.size();
        mac = "..." + (keep < mac.size() ? mac.substr(mac.size() - keep) : mac);
    }
    return Column(name, 13) + Column(label + " (" + mac + ")", 30) + p.connectionStatus + " " +
           (p.usedBy.empty() ? "" : "(...)");
}

}  // namespace Tesk
