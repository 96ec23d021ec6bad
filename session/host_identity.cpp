#include "session/host_identity.h"

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"
#include "ui/markup_escape.h"

namespace Tesk {

std::string HostMessage(const std::string& lead) {
    std::string host, domain;
    TryHost("Getting host name failed: %s", [&] {
        auto dns = HostCtl::TheBackend().GetDnsConfig("defaultNetStack");
        host = dns->GetHostname();
        domain = dns->GetDomain();
    });
    return lead + EscapeHostText(host) + "." + EscapeHostText(domain) + ".";
}

}  // namespace Tesk
