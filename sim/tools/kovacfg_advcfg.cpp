// "/sbin/kovacfg-advcfg": reads and sets advanced options.
//   kovacfg-advcfg [-q] -g NAME         prints the value ("-q": the value alone)
//   kovacfg-advcfg [-q] -s VALUE NAME   sets it
#include <charconv>
#include <iostream>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

constexpr const char kTool[] = "kovacfg-advcfg";

std::string ValueText(const Json& option) {
    const Json& value = option.contains("value") ? option["value"] : Json();
    return value.is_string() ? value.get<std::string>() : value.dump();
}

int AdvCfgMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    bool quiet = false;
    std::optional<std::string> get, setValue, setName;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "-q") {
            quiet = true;
        } else if (args[i] == "-g" && i + 1 < args.size()) {
            get = args[++i];
        } else if (args[i] == "-s" && i + 2 < args.size()) {
            setValue = args[++i];
            setName = args[++i];
        } else {
            return Fail(kTool, "usage: kovacfg-advcfg [-q] -g NAME | -s VALUE NAME", 2);
        }
    }
    if (get) {
        Json options = Sim::Snapshot()->value("advancedOptions", Json::object());
        auto it = options.find(*get);
        if (it == options.end() || !it->is_object())
            return Fail(kTool, "Unable to get option " + *get + ": Not found");
        if (quiet)
            std::cout << ValueText(*it) << "\n";
        else
            std::cout << "Value of " << get->substr(get->find_last_of('/') + 1) << " is "
                      << ValueText(*it) << "\n";
        return 0;
    }
    if (!setName) return Fail(kTool, "usage: kovacfg-advcfg [-q] -g NAME | -s VALUE NAME", 2);
    int status = 0;
    Sim::Update([&](Json& state) {
        Json& options = Section(state, "advancedOptions");
        auto it = options.find(*setName);
        if (it == options.end() || !it->is_object()) {
            status = Fail(kTool, "Unable to set option " + *setName + ": Not found");
            return;
        }
        if (it->value("type", "integer") != "integer") {
            (*it)["value"] = *setValue;
        } else {
            long long n = 0;
            auto [end, ec] =
                std::from_chars(setValue->data(), setValue->data() + setValue->size(), n);
            if (ec != std::errc() || end != setValue->data() + setValue->size()) {
                status = Fail(kTool, "Invalid integer value '" + *setValue + "'");
                return;
            }
            (*it)["value"] = n;
        }
        if (!quiet)
            std::cout << "Value of " << setName->substr(setName->find_last_of('/') + 1) << " is "
                      << ValueText(*it) << "\n";
    });
    return status;
}

}  // namespace

SIM_TOOL({"/sbin/kovacfg-advcfg"}, &AdvCfgMain);

}  // namespace Sim::Tools
