#include "linuxhost/resolv_conf.h"

#include <unistd.h>

#include <climits>
#include <sstream>

#include "hostctl/exception.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

constexpr char kResolvConf[] = "/etc/resolv.conf";

bool OwnedByResolved(const std::string& path) {
    char target[PATH_MAX];
    const ssize_t n = ::readlink(path.c_str(), target, sizeof target - 1);
    return n > 0 &&
           std::string(target, static_cast<std::size_t>(n)).find("/run/systemd/resolve/") !=
               std::string::npos;
}

}  // namespace

ResolvConf ParseResolvConf(const std::string& text) {
    ResolvConf conf;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string keyword;
        words >> keyword;
        if (keyword == "nameserver") {
            std::string server;
            if (words >> server) conf.nameServers.push_back(server);
        } else if (keyword == "search" || keyword == "domain") {
            // The last of them counts, as for the resolver.
            conf.search.clear();
            for (std::string domain; words >> domain;) conf.search.push_back(domain);
        } else if (!keyword.empty() && keyword[0] != '#' && keyword[0] != ';') {
            conf.otherLines.push_back(line);
        }
    }
    return conf;
}

std::string FormatResolvConf(const ResolvConf& conf) {
    std::string text = "# Written by the console from the management network's settings.\n";
    if (!conf.search.empty()) {
        text += "search";
        for (const auto& domain : conf.search) text += " " + domain;
        text += "\n";
    }
    for (const auto& server : conf.nameServers) text += "nameserver " + server + "\n";
    for (const auto& line : conf.otherLines) text += line + "\n";
    return text;
}

ResolvConf ReadResolvConf() {
    const auto text = Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(kResolvConf));
    return text ? ParseResolvConf(*text) : ResolvConf{};
}

void WriteResolvConf(const ResolvConf& conf) {
    const std::string path = Tesk::Platform::HostPath(kResolvConf);
    if (OwnedByResolved(path)) {
        Tesk::Platform::Log(LOG_INFO, "%s belongs to systemd-resolved; left as it is", kResolvConf);
        return;
    }
    try {
        Sim::ReplaceFile(path, FormatResolvConf(conf), 0644);
    } catch (const std::runtime_error& error) {
        const std::string text = std::string("Writing ") + kResolvConf + " failed: " + error.what();
        Tesk::Platform::Log(LOG_ERR, "%s", text.c_str());
        throw HostCtl::Lib::HostCtlException(text);
    }
}

}  // namespace LinuxHost
