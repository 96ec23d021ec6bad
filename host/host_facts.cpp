#include "host/host_facts.h"

#include <cstring>

#include "host/queries.h"
#include "hostctl/try_call.h"
#include "platform/zsi.h"

namespace Tesk {
namespace {

// One field of the system-version node; empty while the node cannot be read.
using VersionField = char (ZSI_SystemVersion::*)[64];
std::string ReadVersionField(VersionField field) {
    ZSI_SystemVersion v{};
    if (ZSI_Get(ZSI_NODE_system_version, &v, sizeof v) != 0) return {};
    const char* text = v.*field;
    return std::string(text, strnlen(text, sizeof(v.*field)));
}

}  // namespace

HostFactMap HostFacts(const HostCtl::Backend& host) {
    HostFactMap facts;
    facts["ip"] = [&host] {
        auto nic = GetManagementInterface(host);
        if (!nic) return std::string();
        return TryHost("Getting IP configuration failed: %s",
                       [&] {
                           const auto config = nic->GetIpConfig();
                           return config.GetIpv4UseNone()
                                      ? std::string()
                                      : config.GetIpv4Address().GetStringAddress();
                       })
            .value_or("");
    };
    facts["kovaproduct"] = [] { return ReadVersionField(&ZSI_SystemVersion::productName); };
    facts["kovaversion"] = [] { return ReadVersionField(&ZSI_SystemVersion::productVersion); };
    return facts;
}

}  // namespace Tesk
