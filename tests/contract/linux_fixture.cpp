// The Linux host under the contract, in the lab (scripts/lab.sh, docs/lab.md):
// each host is the lab's own, brought to the shape for real. A managed host is
// the console's networkd files for the bridge br0 over eth0 with static IPv4
// and IPv6 addresses, the host name and the name servers, applied by networkd
// before the case starts; a bare host is a network namespace of its own with
// no NIC at all. Between cases the lab root's files go back to how the lab
// made them. Outside the lab every case skips.
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "linuxhost/backend.h"
#include "platform/host_platform.h"
#include "tests/contract/backend_fixture.h"

namespace {

namespace fs = std::filesystem;
using TeskContract::Capability;
using TeskContract::Shape;

constexpr char kLayouts[] = "/usr/share/X11/xkb/rules/base.lst";
constexpr char kHostAddress[] = "192.168.77.20";
constexpr char kHostAddress6[] = "fd77::20";

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

void Write(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::trunc) << text;
}

// Polls until the shell command succeeds; std::runtime_error (the case
// fails) after a minute.
void WaitFor(const std::string& what, const std::string& command) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::system(command.c_str()) != 0) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("the lab did not reach: " + what);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

// The management network as the console writes it: br0 over eth0, static
// addresses, the lab's gateway and name servers.
const std::pair<const char*, const char*> kManagedFiles[] = {
    {"60-tesk-br0.netdev", "[NetDev]\nName=br0\nKind=bridge\nMACAddress=02:7e:5c:00:00:10\n"},
    {"60-tesk-br0-uplinks.network", "[Match]\nName=eth0\n\n[Network]\nBridge=br0\n"},
    {"60-tesk-br0.network",
     "[Match]\nName=br0\n\n[Network]\nDHCP=no\nLinkLocalAddressing=ipv6\nIPv6AcceptRA=no\n"
     "Address=192.168.77.20/24\nGateway=192.168.77.1\nAddress=fd77::20/64\nGateway=fd77::1\n"
     "DNS=192.168.77.1\nDNS=fd77::1\nDomains=lab.test\n"},
};

class LinuxFixture : public TeskContract::BackendFixture {
public:
    LinuxFixture() : root_(Env("TESK_ROOT")) {
        if (Env("LAB_DIR").empty()) return;
        pristine_ = fs::path(Env("LAB_DIR")) / "contract-pristine";
        // The lab root as the lab made it, kept once for every case.
        if (!fs::exists(pristine_)) fs::copy(root_, pristine_, fs::copy_options::recursive);
        Tesk::Platform::InstallHostPlatform(LinuxHost::MakeLinuxPlatform());
    }
    ~LinuxFixture() override { Tesk::Platform::InstallHostPlatform(nullptr); }

    std::optional<std::string> WhyNoHost() const override {
        if (Env("LAB_DIR").empty() || root_.empty())
            return "the Linux backend's contract runs in the lab (scripts/lab.sh -- contract_test "
                   "--backend=linux)";
        return std::nullopt;
    }

    std::optional<std::string> Lacks(Capability capability) const override {
        switch (capability) {
            case Capability::DistributedSwitches:
                return "a Linux host has no distributed switches";
            case Capability::InjectedFailures:
                return "the Linux backend drives the real kernel and services, which cannot be "
                       "made to fail one operation to order";
            case Capability::SmartCards:
                return "the lab has no pcscd, so no reader and no card";
            case Capability::FirewallRulesets:
                return "a Linux host's firewall is not managed by the console";
            case Capability::NewAdvancedOptions:
                return "the Linux backend keeps only the advanced options it maps to its own "
                       "settings";
            case Capability::HypervisorFactoryLayout:
                return "a Linux host's factory layout is one bridge on DHCP and keeps its name "
                       "servers (the lab's FactoryRestoreLeavesTheHostOnDhcp checks it)";
            case Capability::SecondStandardSwitch:
                return "the Linux backend keeps one bridge, the management network's, with its "
                       "one port group";
            case Capability::OffSubnetGateways:
                break;
        }
        return std::nullopt;
    }

    std::unique_ptr<HostCtl::Backend> Start(Shape shape) override {
        EnterLabNetwork();
        RestoreRoot();
        RemoveOurNetwork();
        if (shape == Shape::Bare) {
            // A host without NICs: a network namespace of this thread's own.
            if (::unshare(CLONE_NEWNET) != 0)
                throw std::runtime_error("cannot make a network namespace without NICs");
            std::system("ip link set lo up");
        } else {
            for (const auto& [name, text] : kManagedFiles)
                Write(root_ / "etc/systemd/network" / name, text);
            Write(root_ / "etc/resolv.conf",
                  "search lab.test\nnameserver 192.168.77.1\nnameserver fd77::1\n");
            // The keyboard layouts the host knows: the machine's list.
            if (const fs::path to = root_ / fs::path(kLayouts).relative_path();
                fs::exists(kLayouts)) {
                fs::create_directories(to.parent_path());
                fs::copy_file(kLayouts, to, fs::copy_options::overwrite_existing);
            }
            // setupcon, which applies a layout to the machine's own console,
            // is a stand-in in the root (the runner resolves /bin under it).
            Write(root_ / "bin/setupcon", "#!/bin/sh\nexit 0\n");
            fs::permissions(root_ / "bin/setupcon",
                            fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                fs::perms::others_read | fs::perms::others_exec);
            Reload();
            // networkd fails an uplink whose bridge is not there yet: once
            // it is, the uplink is configured again.
            WaitFor("br0 made", "ip link show dev br0 >/dev/null 2>&1");
            std::system("networkctl reconfigure eth0");
            // Both addresses there and no longer tentative, the link configured.
            WaitFor("br0 configured with " + std::string(kHostAddress) + " and " + kHostAddress6,
                    std::string("ip -o addr show dev br0 | grep -v tentative | grep -c -e ' ") +
                        kHostAddress + "/' -e ' " + kHostAddress6 +
                        "/' | grep -qx 2 && networkctl list br0 | grep -q ' configured'");
        }
        return LinuxHost::MakeLinuxBackend();
    }

    void FailOperation(const std::string&, const std::string&) override {
        throw std::logic_error("the Linux fixture cannot inject failures");
    }
    void Recover() override {}
    void InsertSmartCard(const std::vector<std::string>&) override {
        throw std::logic_error("the Linux fixture has no smart-card reader");
    }

private:
    // In the lab host's network namespace (a bare host before left it).
    static void EnterLabNetwork() {
        const int ns = ::open(Env("LAB_HOST_NETNS").c_str(), O_RDONLY | O_CLOEXEC);
        const bool entered = ns >= 0 && ::setns(ns, CLONE_NEWNET) == 0;
        if (ns >= 0) ::close(ns);
        if (!entered) throw std::runtime_error("cannot enter the lab host's network");
    }

    // The root's files as the lab made them: each file written back in place
    // (some are bind mounts into the lab host), files added since removed.
    void RestoreRoot() {
        for (const auto& entry : fs::recursive_directory_iterator(pristine_)) {
            const fs::path to = root_ / fs::relative(entry.path(), pristine_);
            if (entry.is_directory())
                fs::create_directories(to);
            else if (entry.is_regular_file())
                Write(to, (std::ostringstream() << std::ifstream(entry.path()).rdbuf()).str());
        }
        std::vector<fs::path> added;
        for (const auto& entry : fs::recursive_directory_iterator(root_))
            if (!entry.is_directory() && !fs::exists(pristine_ / fs::relative(entry, root_)))
                added.push_back(entry.path());
        for (const auto& path : added) fs::remove(path);
    }

    // No file of ours (RestoreRoot), and none of the links they made.
    void RemoveOurNetwork() {
        std::system(
            "for link in $(ip -o link show type bridge | cut -d: -f2 | cut -d@ -f1);"
            " do ip link del $link; done; ip -o link show type vlan | cut -d: -f2 |"
            " cut -d@ -f1 | xargs -r -n1 ip link del");
        for (const char* nic : {"eth0", "eth1", "eth2"})
            std::system(("ip addr flush dev " + std::string(nic) + " 2>/dev/null").c_str());
        Reload();
    }

    static void Reload() {
        if (std::system("networkctl reload") != 0)
            throw std::runtime_error("networkd did not reload its files");
    }

    fs::path root_;
    fs::path pristine_;
};

}  // namespace

TESK_CONTRACT_BACKEND("linux", LinuxFixture);
