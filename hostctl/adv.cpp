#include "hostctl/adv.h"

#include "hostctl/simhost.h"

namespace ZrkCtl::Adv {

std::optional<HostCtl::Adv::OptionValue> AdvancedOptionImpl::GetOption(
    const std::string& name) const {
    Sim::CheckFault("adv.getOption");
    Sim::Json state = Sim::Load();
    const auto& options = state.value("advancedOptions", Sim::Json::object());
    auto it = options.find(name);
    if (it == options.end() || !it->is_object()) return std::nullopt;
    HostCtl::Adv::OptionValue v;
    if (it->value("type", "integer") == "integer" && (*it)["value"].is_number_integer()) {
        v.type = HostCtl::Adv::OptionValue::Type::Integer;
        v.intValue = (*it)["value"].get<std::int64_t>();
    } else {
        v.type = HostCtl::Adv::OptionValue::Type::String;
        v.stringValue =
            (*it)["value"].is_string() ? (*it)["value"].get<std::string>() : (*it)["value"].dump();
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
    Sim::CheckFault("adv.hasUserOption");
    Sim::Json state = Sim::Load();
    const auto& options = state.value("userOptions", Sim::Json::object());
    return options.contains(name);
}

}  // namespace ZrkCtl::Adv
