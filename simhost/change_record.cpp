// The simulated host's change record. The copy holds whole top-level sections
// of the state; the outside network ("/network/outside") is the world around
// the host, not the host, and is never put back.
#include "simhost/change_record.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <utility>
#include <vector>

#include "hostctl/exception.h"
#include "simhost/simhost.h"

namespace ZrkCtl::Changes {
namespace {

using HostCtl::Changes::ChangeKind;
using Sim::Json;

constexpr const char kRecord[] = "pendingChange";

struct KindEntry {
    ChangeKind kind;
    const char* name;
    std::vector<const char*> sections;
};

const std::vector<KindEntry>& Kinds() {
    static const std::vector<KindEntry> kinds{
        {ChangeKind::ManagementNetwork, "managementNetwork", {"network"}},
        {ChangeKind::FactoryNetworkRestore, "factoryNetworkRestore", {"network", "vms"}},
        {ChangeKind::StandardSwitchRestore, "standardSwitchRestore", {"network"}},
        {ChangeKind::AgentsRestart, "agentsRestart", {"hostAgent", "services"}},
    };
    return kinds;
}

const KindEntry* ByKind(ChangeKind kind) {
    for (const auto& k : Kinds())
        if (k.kind == kind) return &k;
    return nullptr;
}

const KindEntry* ByName(const std::string& name) {
    for (const auto& k : Kinds())
        if (name == k.name) return &k;
    return nullptr;
}

const Json* Record(const Json& state) {
    if (!state.is_object()) return nullptr;
    auto it = state.find(kRecord);
    return it == state.end() || !it->is_object() ? nullptr : &*it;
}

}  // namespace

void ChangeRecordImpl::Begin(ChangeKind kind) const {
    Sim::CheckFault("changeRecord.begin");
    const KindEntry* entry = ByKind(kind);
    Sim::Update([&](Json& state) {
        if (Record(state))
            throw HostCtl::Lib::HostCtlException("Another change of the host is not finished");
        Json previous = Json::object();
        for (const char* section : entry->sections) {
            auto it = state.find(section);
            previous[section] = it == state.end() ? Json() : *it;
        }
        if (previous["network"].is_object()) previous["network"].erase("outside");
        state[kRecord] = {{"kind", entry->name},
                          {"owner", static_cast<int>(::getpid())},
                          {"revertAt", 0},
                          {"previous", std::move(previous)}};
    });
}

void ChangeRecordImpl::SetRevertAt(std::int64_t revertAt) const {
    Sim::Update([&](Json& state) {
        if (!Record(state)) throw HostCtl::Lib::HostCtlException("No change is recorded");
        state[kRecord]["revertAt"] = revertAt;
    });
}

void ChangeRecordImpl::Finish() const {
    Sim::Update([](Json& state) {
        if (state.is_object()) state.erase(kRecord);
    });
}

void ChangeRecordImpl::PutBack() const {
    Sim::Update([](Json& state) {
        const Json* record = Record(state);
        if (!record) return;
        const Json previous = record->value("previous", Json::object());
        for (const auto& [section, value] : previous.items()) {
            if (value.is_null()) {
                state.erase(section);
                continue;
            }
            Json put = value;
            if (section == "network" && state.contains("network") && state["network"].is_object() &&
                state["network"].contains("outside"))
                put["outside"] = state["network"]["outside"];
            state[section] = std::move(put);
        }
        state.erase(kRecord);
    });
}

std::optional<HostCtl::Changes::PendingChange> ChangeRecordImpl::Pending() const {
    auto state = Sim::Snapshot();
    const Json* record = Record(*state);
    if (!record) return std::nullopt;
    HostCtl::Changes::PendingChange change;
    const KindEntry* entry = ByName(record->value("kind", std::string()));
    if (entry) change.kind = entry->kind;
    const Json& owner = (*record)["owner"];
    const Json& revertAt = (*record)["revertAt"];
    if (owner.is_number_integer()) change.owner = owner.get<int>();
    if (revertAt.is_number_integer()) change.revertAt = revertAt.get<std::int64_t>();
    change.ownerRunning = change.owner > 0 && (::kill(change.owner, 0) == 0 || errno == EPERM);
    return change;
}

}  // namespace ZrkCtl::Changes
