// The simulated host's platform hooks: the system-information nodes, the
// event service's start-up check and the active virtual terminal, from its
// state.
#include "simhost/platform_nodes.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "hostctl/exception.h"
#include "platform/host_root_platform.h"
#include "platform/syslog.h"
#include "platform/zsi.h"
#include "simhost/state_values.h"
#include "store/state.h"

namespace ZrkCtl {
namespace {

using Json = ::Sim::Json;

void CopyField(char (&field)[64], const Json& from, const char* key) {
    std::string text = Sim::Text(from, key);
    std::strncpy(field, text.c_str(), sizeof field - 1);
    field[sizeof field - 1] = '\0';
}

// The object `key` of the state, or null (no state, no such object).
const Json* Node(const std::shared_ptr<const Json>& state, const char* key) {
    if (!state || !Sim::Member(*state, key)) return nullptr;
    return &Sim::Object(*state, key);
}

std::shared_ptr<const Json> StateOrNull() {
    try {
        return ::Sim::Snapshot();
    } catch (const std::exception&) {
        return nullptr;
    }
}

int ReadNodeUnchecked(ZSI_Node node, void* out, std::size_t size) {
    switch (node) {
        case ZSI_NODE_system_version: {
            if (size < sizeof(ZSI_SystemVersion) || ::Sim::Fault("zsi.systemVersion")) return -1;
            auto state = StateOrNull();
            const Json* system = Node(state, "system");
            if (!system) return -1;
            ZSI_SystemVersion v{};
            CopyField(v.productName, *system, "productName");
            CopyField(v.productVersion, *system, "productVersion");
            CopyField(v.kernelVersion, *system, "kernelVersion");
            CopyField(v.buildNumber, *system, "buildNumber");
            std::memcpy(out, &v, sizeof v);
            return 0;
        }
        case ZSI_NODE_system_bootOption: {
            if (size < 4 || ::Sim::Fault("zsi.bootOption")) return -1;
            auto state = StateOrNull();
            const Json* boot = Node(state, "bootOption");
            if (!boot) return -1;
            std::uint8_t value[4] = {0, 0, 0, 0};
            value[0] = Sim::Flag(*boot, "auditMode") ? 1 : 0;
            std::memcpy(out, value, 4);
            return 0;
        }
    }
    return -1;
}

// A value of the wrong kind makes the node unreadable, as a missing one does,
// and says so in the log.
int ReadNode(ZSI_Node node, void* out, std::size_t size) {
    try {
        return ReadNodeUnchecked(node, out, size);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Tesk::Platform::Log(LOG_ERR, "Reading system information node %d failed: %s",
                            static_cast<int>(node), e.what());
        return -1;
    }
}

// The console's virtual terminal: "/console/activeVt" of the state.
bool RecordActiveTerminal(int vt) {
    try {
        ::Sim::Update([vt](Json& state) { state["console"]["activeVt"] = vt; });
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

int NoxInitCheck() {
    auto fault = ::Sim::Fault("noxUserLib.init");
    if (!fault) return 0;
    try {
        return fault->is_object() ? Sim::Integer<int>(*fault, "errorCode", 1) : 1;
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Tesk::Platform::Log(LOG_ERR, "Event service check: %s", e.what());
        return 1;
    }
}

// The nodes and the event service's check, read from the state.
template <class Where>
class StateNodes : public Where {
public:
    int ReadSystemNode(ZSI_Node node, void* out, std::size_t size) const override {
        return ReadNode(node, out, size);
    }
    int CheckEventService() const override { return NoxInitCheck(); }
};

// A simulated root: its own logs, and the terminal recorded in its state.
class InItsRoot final : public StateNodes<Tesk::Platform::HostRootPlatform> {
public:
    void ActivateVirtualTerminal(int vt) const override {
        if (!RecordActiveTerminal(vt))
            Tesk::Platform::Log(LOG_ERR,
                                "Activating virtual terminal %d of the simulated host failed", vt);
        else
            Tesk::Platform::Log(LOG_INFO, "Activated virtual terminal %d of the simulated host",
                                vt);
    }
};

}  // namespace

std::unique_ptr<Tesk::Platform::HostPlatform> MakeSimulatedPlatform() {
    if (Tesk::Platform::IsSimulatedRoot()) return std::make_unique<InItsRoot>();
    return std::make_unique<StateNodes<Tesk::Platform::HostPlatform>>();
}

}  // namespace ZrkCtl
