// The host's virtual machines through libvirt, loaded at the first use. Its
// errors are logged here; libvirt's own habit of printing them on standard
// error (the console's screen) is turned off before the first call.
#include <libvirt/libvirt.h>
#include <libvirt/virterror.h>

#include <cstdlib>
#include <memory>

#include "hostctl/exception.h"
#include "linuxhost/hypervisor.h"
#include "linuxhost/lazy_library.h"
#include "linuxhost/options.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

void IgnoreError(void*, virErrorPtr) {}

std::string LastError() {
    const auto message = TESK_LAZY(kLibvirt, virGetLastErrorMessage);
    const char* text = message ? message() : nullptr;
    return text ? text : "unknown error";
}

[[noreturn]] void Fail(const std::string& what) {
    Tesk::Platform::Log(LOG_ERR, "%s", what.c_str());
    throw HostCtl::Lib::HostCtlException(what);
}

struct DomainFree {
    void operator()(virDomainPtr domain) const { TESK_LAZY(kLibvirt, virDomainFree)(domain); }
};
using Domain = std::unique_ptr<virDomain, DomainFree>;

class LibvirtHypervisor : public Hypervisor {
public:
    explicit LibvirtHypervisor(virConnectPtr connection) : connection_(connection) {}
    ~LibvirtHypervisor() override { TESK_LAZY(kLibvirt, virConnectClose)(connection_); }

    std::vector<std::string> Running() override {
        virDomainPtr* domains = nullptr;
        const int count = TESK_LAZY(kLibvirt, virConnectListAllDomains)(
            connection_, &domains, VIR_CONNECT_LIST_DOMAINS_ACTIVE);
        if (count < 0) Fail("Listing the running virtual machines failed: " + LastError());
        std::vector<std::string> names;
        for (int i = 0; i < count; ++i) {
            const Domain domain(domains[i]);
            const char* name = TESK_LAZY(kLibvirt, virDomainGetName)(domain.get());
            if (name != nullptr) names.emplace_back(name);
        }
        ::free(domains);
        return names;
    }

    bool Shutdown(const std::string& name) override {
        return Act(name, TESK_LAZY(kLibvirt, virDomainShutdown), "Shutting down virtual machine");
    }

    bool Destroy(const std::string& name) override {
        return Act(name, TESK_LAZY(kLibvirt, virDomainDestroy), "Powering off virtual machine");
    }

private:
    bool Act(const std::string& name, int (*action)(virDomainPtr), const char* what) {
        const Domain domain(TESK_LAZY(kLibvirt, virDomainLookupByName)(connection_, name.c_str()));
        if (domain && action != nullptr && action(domain.get()) == 0) return true;
        Tesk::Platform::Log(LOG_ERR, "%s %s failed: %s", what, name.c_str(), LastError().c_str());
        return false;
    }

    virConnectPtr connection_;
};

}  // namespace

std::unique_ptr<Hypervisor> ConnectHypervisor() {
    const auto open = TESK_LAZY(kLibvirt, virConnectOpen);
    const auto quiet = TESK_LAZY(kLibvirt, virSetErrorFunc);
    if (open == nullptr || quiet == nullptr) Fail("libvirt cannot be loaded on this host");
    quiet(nullptr, IgnoreError);
    const std::string uri = Options::Text("libvirt.uri").value_or("");
    virConnectPtr connection = open(uri.c_str());
    if (connection == nullptr) Fail("Connecting to " + uri + " failed: " + LastError());
    return std::make_unique<LibvirtHypervisor>(connection);
}

}  // namespace LinuxHost
