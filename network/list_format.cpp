#include "network/list_format.h"

#include <algorithm>

#include "ui/markup_escape.h"

namespace Tesk {

const char* const kSwitchRowHeader =
    "{align:padding:20}Device Name{/align}{align:padding:10}Uplinks{/align}{align:padding:15}Port "
    "Groups{/align}{align:padding:12}Used Ports{/align}{align:padding:16}Configured Ports{/align}";
const char* const kPnicRowHeader =
    "{align:padding:13}Device Name{/align}{align:padding:30}Hardware Label (MAC "
    "Address){/align}Status";

std::string Column(const std::string& text, int width) {
    return "{align:padding:" + std::to_string(width) + "}" + text + "{/align}";
}

std::string Count(std::int64_t n) {
    return std::to_string(n);
}

std::string FitColumn(const std::string& text, int width) {
    if (static_cast<int>(text.size()) <= width - 2) return text;
    return text.substr(0, static_cast<std::size_t>(std::max(width - 5, 0))) + "...";
}

std::string FittedColumn(const std::string& text, int width) {
    return Column(EscapeHostText(FitColumn(text, width)), width);
}

std::string FormatSwitchDetails(const SwitchSummary& s) {
    auto orNone = [](const std::string& t) {
        return t.empty() ? std::string("None") : EscapeHostText(t);
    };
    return "Number of ports: " + Count(s.numPorts) + "\nUsed ports: " + Count(s.usedPorts) +
           "\nConfigured ports: " + Count(s.configuredPorts) +
           "\nUplinks: " + orNone(JoinNames(s.uplinks)) +
           "\nPort groups: " + orNone(JoinNames(s.portGroups));
}

std::string FormatSwitchRow(const SwitchSummary& s) {
    return FittedColumn(s.name, 20) + FittedColumn(JoinNames(s.uplinks), 10) +
           FittedColumn(JoinNames(s.portGroups), 15) + Column(Count(s.usedPorts), 12) +
           Column(Count(s.configuredPorts), 16) + "  ...";
}

std::string FormatPnicDetails(const PnicSummary& p) {
    return "Hardware Label: " + EscapeHostText(p.hardwareLabel) +
           "\nMAC Address: " + EscapeHostText(p.macAddress) +
           "\nConnection Status: " + EscapeHostText(p.connectionStatus) +
           "\nUsed By: " + (p.usedBy.empty() ? std::string("None") : EscapeHostText(p.usedBy));
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
    return Column(EscapeHostText(name), 13) +
           Column(EscapeHostText(label) + " (" + EscapeHostText(mac) + ")", 30) +
           EscapeHostText(p.connectionStatus) + " " + (p.usedBy.empty() ? "" : "(...)");
}

}  // namespace Tesk
