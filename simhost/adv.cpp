// The simulated host's advanced options and user advanced options.
#include "simhost/adv.h"

#include "simhost/simhost.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Adv {

std::optional<HostCtl::Adv::OptionValue> AdvancedOptionImpl::GetOption(
    const std::string& name) const {
    auto state = Sim::SnapshotFor("adv.getOption");
    const Sim::Json& options = Sim::Object(*state, "advancedOptions");
    if (!Sim::Member(options, name)) return std::nullopt;
    const Sim::Json& option = Sim::Object(options, name);
    HostCtl::Adv::OptionValue v;
    const Sim::Json* value = Sim::Member(option, "value");
    const Sim::Json& given = value ? *value : Sim::Json();
    if (Sim::Text(option, "type", "integer") == "integer" && given.is_number_integer()) {
        v.type = HostCtl::Adv::OptionValue::Type::Integer;
        v.intValue = Sim::Integer<std::int64_t>(option, "value", 0);
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
    return Sim::Member(Sim::Object(*state, "userOptions"), name) != nullptr;
}

}  // namespace ZrkCtl::Adv
