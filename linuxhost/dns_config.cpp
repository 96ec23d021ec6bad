// The host's name and DNS: the name is the kernel's (sethostname) and
// /etc/hostname's, the domain the backend's option network.domain (else the
// first search domain); the name
// servers and search domains run from /etc/resolv.conf and are saved into
// the management network's networkd file (which hands them to
// systemd-resolved where it runs).
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <climits>
#include <cstring>
#include <functional>

#include "hostctl/exception.h"
#include "linuxhost/fail.h"
#include "linuxhost/management.h"
#include "linuxhost/net_objects.h"
#include "linuxhost/options.h"
#include "linuxhost/resolv_conf.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

constexpr char kHostnameFile[] = "/etc/hostname";

// The kernel's host name is this host's when the console runs on the
// machine's own root, or in a UTS namespace of its own (the lab); a fixture
// root beside the machine's name keeps its name in its /etc/hostname only.
bool KernelNameIsOurs() {
    if (!Tesk::Platform::IsSimulatedRoot()) return true;
    struct stat own {
    }, init{};
    if (::stat("/proc/self/ns/uts", &own) != 0 || ::stat("/proc/1/ns/uts", &init) != 0)
        return false;
    return own.st_ino != init.st_ino || own.st_dev != init.st_dev;
}

// A label of letters, digits and inner hyphens, 1 to 63 characters.
bool IsLabel(const std::string& name) {
    if (name.empty() || name.size() > 63 || name.front() == '-' || name.back() == '-') return false;
    return std::all_of(name.begin(), name.end(),
                       [](unsigned char c) { return std::isalnum(c) != 0 || c == '-'; });
}

bool IsDomain(const std::string& domain) {
    if (domain.empty() || domain.size() > 253) return false;
    std::size_t start = 0;
    while (true) {
        const auto dot = domain.find('.', start);
        if (!IsLabel(domain.substr(start, dot - start))) return false;
        if (dot == std::string::npos) return true;
        start = dot + 1;
    }
}

std::string FileHostname() {
    const auto text = Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(kHostnameFile));
    if (!text) return {};
    std::string name = text->substr(0, text->find('\n'));
    return name.substr(0, name.find('.'));
}

// The DNS changes made through any configuration object: a change makes
// every object's copy stale, not only its own.
std::atomic<unsigned> dnsChanges{0};

class LinuxDnsConfig : public HN::DnsConfig {
public:
    bool IsStale() const override { return !loaded_ || seen_ != dnsChanges; }
    void Refresh() override {
        hostname_ = ReadHostname();
        resolv_ = ReadResolvConf();
        domain_ = Options::Text("network.domain").value_or("");
        if (domain_.empty() && !resolv_.search.empty()) domain_ = resolv_.search.front();
        loaded_ = true;
        seen_ = dnsChanges;
    }
    std::string GetHostname() override { return Data().hostname_; }
    std::string GetDomain() override { return Data().domain_; }
    std::vector<HN::Ipv4Address> GetNameServers() override {
        std::vector<HN::Ipv4Address> servers;
        for (const auto& server : Data().resolv_.nameServers)
            if (HN::Ipv4Address::IsValidAddress(server)) servers.emplace_back(server);
        return servers;
    }
    std::vector<HN::Ipv6Address> GetIpv6NameServers(bool includeLinkLocal) override {
        std::vector<HN::Ipv6Address> servers;
        for (const auto& server : Data().resolv_.nameServers) {
            if (!HN::Ipv6Address::IsValidAddress(server)) continue;
            HN::Ipv6Address address(server);
            if (includeLinkLocal || !address.IsLinkLocal()) servers.push_back(address);
        }
        return servers;
    }
    std::vector<std::string> GetSearchDomains() override { return Data().resolv_.search; }

    void SetHostname(const std::string& hostname, bool /*save*/) override {
        if (!IsLabel(hostname)) Fail("Invalid host name '" + hostname + "'");
        if (KernelNameIsOurs()) {
            if (::sethostname(hostname.data(), hostname.size()) != 0)
                Fail("Setting the host name to " + hostname + " failed: " + std::strerror(errno));
        } else {
            Tesk::Platform::Log(LOG_INFO, "The kernel's host name is the machine's; only %s is set",
                                kHostnameFile);
        }
        Replace(kHostnameFile, hostname + "\n");
        ++dnsChanges;
    }
    void SetFqdn(const std::string& fqdn, bool save, const std::string& domain) override {
        const auto dot = fqdn.find('.');
        const std::string name = fqdn.substr(0, dot);
        const std::string fqdnDomain = dot == std::string::npos ? "" : fqdn.substr(dot + 1);
        const std::string newDomain = domain.empty() ? fqdnDomain : domain;
        if (!IsLabel(name)) Fail("Invalid host name '" + name + "'");
        if (!newDomain.empty() && !IsDomain(newDomain)) Fail("Invalid domain '" + newDomain + "'");
        SetHostname(name, save);
        if (!Options::Set("network.domain", newDomain))
            Fail("Saving the domain " + newDomain + " failed");
    }
    void RemoveNameServers() override {
        ChangeResolv([](ResolvConf& conf) { conf.nameServers.clear(); });
    }
    void AddUserNameServer(const HN::IpAddress& server) override {
        std::string text = server.GetStringAddress();
        if (server.IsIpv6())
            text = static_cast<const HN::Ipv6Address&>(server).GetScopedStringAddress();
        ChangeResolv([&](ResolvConf& conf) {
            if (std::find(conf.nameServers.begin(), conf.nameServers.end(), text) ==
                conf.nameServers.end())
                conf.nameServers.push_back(text);
        });
    }
    void SetSearchDomainsString(const std::string& text) override {
        std::vector<std::string> domains;
        std::string word;
        for (char c : text + " ") {
            if (std::isspace(static_cast<unsigned char>(c)) || c == ',') {
                if (!word.empty()) domains.push_back(word);
                word.clear();
            } else {
                word += c;
            }
        }
        for (const auto& domain : domains)
            if (!IsDomain(domain)) Fail("Invalid search domain '" + domain + "'");
        ChangeResolv([&](ResolvConf& conf) { conf.search = domains; });
    }
    void AddUserSearchDomain(const std::string& domain) override {
        if (!IsDomain(domain)) Fail("Invalid search domain '" + domain + "'");
        ChangeResolv([&](ResolvConf& conf) {
            if (std::find(conf.search.begin(), conf.search.end(), domain) == conf.search.end())
                conf.search.push_back(domain);
        });
    }
    void SaveConfig() override {
        const ResolvConf conf = ReadResolvConf();
        Replace(kHostnameFile, ReadHostname() + "\n");
        // The management network's file keeps them for the next boot (and
        // for systemd-resolved); a host without one keeps resolv.conf only.
        if (!LoadManagement(ReadKernelNet())) return;
        ChangeManagement([&](ManagementConfig& c) {
            c.nameServers = conf.nameServers;
            c.searchDomains = conf.search;
        });
    }

private:
    static std::string ReadHostname() {
        if (!KernelNameIsOurs()) return FileHostname();
        char name[HOST_NAME_MAX + 1] = {};
        if (::gethostname(name, sizeof name - 1) != 0) return FileHostname();
        std::string text = name;
        return text.substr(0, text.find('.'));
    }
    static void Replace(const char* path, const std::string& text) {
        try {
            Sim::ReplaceFile(Tesk::Platform::HostPath(path), text, 0644);
        } catch (const std::runtime_error& error) {
            Fail(std::string("Writing ") + path + " failed: " + error.what());
        }
    }
    void ChangeResolv(const std::function<void(ResolvConf&)>& change) {
        ResolvConf conf = ReadResolvConf();
        change(conf);
        WriteResolvConf(conf);
        ++dnsChanges;
    }
    // The copy, read on first use; a stale copy answers until Refresh().
    LinuxDnsConfig& Data() {
        if (!loaded_) Refresh();
        return *this;
    }

    bool loaded_ = false;
    unsigned seen_ = 0;
    std::string hostname_;
    std::string domain_;
    ResolvConf resolv_;
};

}  // namespace

void TakeHostnameFromFile() {
    const std::string name = FileHostname();
    if (name.empty() || !KernelNameIsOurs()) return;
    if (::sethostname(name.data(), name.size()) != 0)
        Tesk::Platform::Log(LOG_ERR, "Setting the host name to %s failed: %s", name.c_str(),
                            std::strerror(errno));
}

std::unique_ptr<HN::DnsConfig> MakeDnsConfig() {
    return std::make_unique<LinuxDnsConfig>();
}

}  // namespace LinuxHost
