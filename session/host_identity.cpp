#include "session/host_identity.h"

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

std::string HostMessage(const std::string& lead) {
    std::string host, domain;
    try {
        auto dns = HostCtl::TheBackend().GetDnsConfig("defaultNetStack");
        host = dns->GetHostname();
        domain = dns->GetDomain();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting host name failed: %s", e.what());
    }
    return lead + host + "." + domain + ".";
}

}  // namespace Tesk
