// The simulated host's advanced options and user advanced options.
#include "simhost/adv.h"

#include "simhost/simhost.h"

namespace ZrkCtl::Adv {

namespace {

// The object `key` of a snapshot, or null.
const Sim::Json* Section(const Sim::Json& state, const char* key) {
    auto it = state.find(key);
    return it != state.end() && it->is_object() ? &*it : nullptr;
}

}  // namespace

std::optional<HostCtl::Adv::OptionValue> AdvancedOptionImpl::GetOption(
    const std::string& name) const {
    auto state = Sim::SnapshotFor("adv.getOption");
    const Sim::Json* options = Section(*state, "advancedOptions");
    if (!options) return std::nullopt;
    auto it = options->find(name);
    if (it == options->end() || !it->is_object()) return std::nullopt;
    HostCtl::Adv::OptionValue v;
    auto value = it->find("value");
    const Sim::Json& given = value != it->end() ? *value : Sim::Json();
    if (it->value("type", "integer") == "integer" && given.is_number_integer()) {
        v.type = HostCtl::Adv::OptionValue::Type::Integer;
        v.intValue = given.get<std::int64_t>();
    } else {
        v.type = HostCtl::Adv::OptionValue::Type::String;
        v.stringValue = given.is_string() ? given.get<std::string>() : given.dump();
    }
    return v;
}

void AdvancedOptionImpl::SetIntOption(const std::string& name, std::int64_t value) const {
    Sim::CheckFault("adv.setOption");
    Sim::Update([&](Sim::Json& state) {
        state["advancedOptions"][name] = {{"type", "integer"}, {"value", value}};
    });
}

bool UserAdvancedOptionImpl::HasUserOption(const std::string& name) const {
    auto state = Sim::SnapshotFor("adv.hasUserOption");
    const Sim::Json* options = Section(*state, "userOptions");
    return options && options->contains(name);
}

}  // namespace ZrkCtl::Adv
