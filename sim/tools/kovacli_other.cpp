// kovacli's commands outside the network namespace, and "/sbin/kovacli-local"
// (the same commands without the management agent):
//   [--formatter=keyvalue] system settings advanced set -o NAME (-i N | -s TEXT)
//   [--formatter=keyvalue] system settings advanced list -o NAME
//   [--formatter=keyvalue] software vib get -n NAME
//   software vib list [--custom]     one name a line: the packages in "vibs"
//                                    and the custom extensions, or only these
#include <charconv>
#include <iostream>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"

#if __has_include("sim/tools/kovacli.h")
#include "sim/tools/kovacli.h"
#else
int KovacliOther(int argc, char** argv);
#endif

namespace Sim::Tools {
namespace {

struct Command {
    std::string tool;
    bool keyValue = false;
    std::vector<std::string> words;  // without the formatter option
};

bool Starts(const std::vector<std::string>& words, std::initializer_list<const char*> prefix) {
    if (words.size() < prefix.size()) return false;
    size_t i = 0;
    for (const char* p : prefix)
        if (words[i++] != p) return false;
    return true;
}

int AdvancedSet(const Command& c) {
    auto name = OptionValue(c.words, "-o");
    auto intText = OptionValue(c.words, "-i");
    auto text = OptionValue(c.words, "-s");
    if (!name || (!intText && !text))
        return Fail(c.tool, "Missing required parameter -o and -i or -s", 1);
    long long number = 0;
    if (intText) {
        auto [end, ec] =
            std::from_chars(intText->data(), intText->data() + intText->size(), number);
        if (ec != std::errc() || end != intText->data() + intText->size())
            return Fail(c.tool, "Invalid integer value '" + *intText + "'");
    }
    int status = 0;
    Sim::Update([&](Json& state) {
        Json& options = Section(state, "advancedOptions");
        auto it = options.find(*name);
        if (it == options.end() || !it->is_object()) {
            status = Fail(c.tool, "Unable to find option " + *name);
            return;
        }
        std::string type = it->value("type", "integer");
        if ((type == "integer") != intText.has_value()) {
            status = Fail(c.tool, "Option " + *name + " takes a value of type " + type);
            return;
        }
        if (intText)
            (*it)["value"] = number;
        else
            (*it)["value"] = *text;
    });
    return status;
}

int AdvancedList(const Command& c) {
    auto name = OptionValue(c.words, "-o");
    if (!name) return Fail(c.tool, "Missing required parameter -o");
    Json options = Sim::Snapshot()->value("advancedOptions", Json::object());
    auto it = options.find(*name);
    if (it == options.end() || !it->is_object())
        return Fail(c.tool, "Unable to find option " + *name);
    std::string type = it->value("type", "integer");
    std::string value =
        (*it)["value"].is_string() ? (*it)["value"].get<std::string>() : (*it)["value"].dump();
    if (c.keyValue)
        std::cout << "SettingsAdvancedOption.Path.string=" << *name << "\n"
                  << "SettingsAdvancedOption.Type.string=" << type << "\n"
                  << "SettingsAdvancedOption.Value.string=" << value << "\n";
    else
        std::cout << "   Path: " << *name << "\n   Type: " << type << "\n   Value: " << value
                  << "\n";
    return 0;
}

int VibGet(const Command& c) {
    auto name = OptionValue(c.words, "-n");
    if (!name) return Fail(c.tool, "Missing required parameter -n");
    Json vibs = Sim::Snapshot()->value("vibs", Json::object());
    auto it = vibs.find(*name);
    if (it == vibs.end() || !it->is_object())
        return Fail(c.tool, "No VIB matching '" + *name + "'.");
    std::string version = it->value("version", "");
    std::string vendor = it->value("vendor", "");
    if (c.keyValue)
        std::cout << "SoftwareVib.Name.string=" << *name << "\n"
                  << "SoftwareVib.Version.string=" << version << "\n"
                  << "SoftwareVib.Vendor.string=" << vendor << "\n";
    else
        std::cout << *name << "\n   Name: " << *name << "\n   Version: " << version
                  << "\n   Vendor: " << vendor << "\n";
    return 0;
}

int VibList(const Command& c) {
    bool customOnly = false;
    for (size_t i = 3; i < c.words.size(); ++i) {
        if (c.words[i] != "--custom") return Fail(c.tool, "Unknown option " + c.words[i], 2);
        customOnly = true;
    }
    const Json state = *Sim::Snapshot();
    const Json vibs = state.value("vibs", Json::object());
    const Json extensions = state.value("customExtensions", Json::array());
    if (!customOnly && vibs.is_object())
        for (auto it = vibs.begin(); it != vibs.end(); ++it) std::cout << it.key() << "\n";
    if (extensions.is_array())
        for (const auto& extension : extensions)
            if (extension.is_object()) std::cout << extension.value("name", "?") << "\n";
    return 0;
}

}  // namespace

int KovacliLocalMain(int argc, char** argv) {
    return ::KovacliOther(argc, argv);
}

SIM_TOOL({"/sbin/kovacli-local"}, &KovacliLocalMain);

}  // namespace Sim::Tools

int KovacliOther(int argc, char** argv) {
    using namespace Sim::Tools;
    Command c;
    c.tool = ToolName(argc > 0 ? argv[0] : "kovacli");
    for (const auto& word : Arguments(argc, argv)) {
        if (word.starts_with("--formatter="))
            c.keyValue = word == "--formatter=keyvalue";
        else
            c.words.push_back(word);
    }
    if (Starts(c.words, {"system", "settings", "advanced", "set"})) return AdvancedSet(c);
    if (Starts(c.words, {"system", "settings", "advanced", "list"})) return AdvancedList(c);
    if (Starts(c.words, {"software", "vib", "get"})) return VibGet(c);
    if (Starts(c.words, {"software", "vib", "list"})) return VibList(c);
    std::string joined;
    for (const auto& w : c.words) joined += (joined.empty() ? "" : " ") + w;
    return Fail(c.tool, "Unknown command or namespace '" + joined + "'", 2);
}
