#include "session/host_identity.h"

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"
#include "ui/markup_escape.h"

namespace Tesk {

std::string HostMessage(const HostCtl::Backend& host, const std::string& lead) {
    std::string name, domain;
    TryHost("Getting host name failed: %s", [&] {
        auto dns = host.GetDnsConfig("defaultNetStack");
        name = dns->GetHostname();
        domain = dns->GetDomain();
    });
    return lead + EscapeHostText(name) + "." + EscapeHostText(domain) + ".";
}

}  // namespace Tesk
