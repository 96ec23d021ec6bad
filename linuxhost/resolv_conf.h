// The host's /etc/resolv.conf (under the host root): its name servers and
// search domains read, and the file written whole and atomically with new
// ones. Lines the console does not manage (options, sortlist) are kept.
// When systemd-resolved owns the file (a link into /run/systemd/resolve) it
// is left alone: resolved learns the servers from networkd's files.
#pragma once

#include <string>
#include <vector>

namespace LinuxHost {

struct ResolvConf {
    std::vector<std::string> nameServers;
    std::vector<std::string> search;
    std::vector<std::string> otherLines;
};

ResolvConf ParseResolvConf(const std::string& text);
std::string FormatResolvConf(const ResolvConf& conf);

ResolvConf ReadResolvConf();
// Throws (logged) when the file cannot be written; does nothing when
// systemd-resolved owns it.
void WriteResolvConf(const ResolvConf& conf);

}  // namespace LinuxHost
