// "/sbin/zrkbacktrace -w -n PROCESS -o PATTERN -d DIR": writes a live core of
// a running process into DIR ("%" in PATTERN becomes a number). Only the host
// agent "hagentd" runs, and only while the management agents are up.
#include <ctime>
#include <fstream>
#include <iostream>

#include "platform/hostroot.h"
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

constexpr const char kTool[] = "zrkbacktrace";

int BacktraceMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    auto process = OptionValue(args, "-n");
    auto pattern = OptionValue(args, "-o");
    auto dir = OptionValue(args, "-d");
    if (!process || !pattern || !dir)
        return Fail(kTool, "usage: zrkbacktrace -w -n PROCESS -o PATTERN -d DIR", 2);
    auto state = Sim::Snapshot();
    if (*process != "hagentd" || !state->value("hostAgent", Json::object()).value("running", true))
        return Fail(kTool, "process " + *process + " is not running");

    std::string name = *pattern;
    if (auto at = name.find('%'); at != std::string::npos)
        name.replace(at, 1, std::to_string(std::time(nullptr)));
    std::string hostFile = *dir + (dir->ends_with("/") ? "" : "/") + name + ".core";
    std::ofstream core(Tesk::Platform::HostPath(hostFile), std::ios::trunc);
    core << "live core of " << *process << "\n";
    if (!core.flush()) return Fail(kTool, "cannot write " + hostFile);
    Sim::Update([&](Json& s) {
        Json& list = s["backtraces"];
        if (!list.is_array()) list = Json::array();
        list.push_back({{"process", *process}, {"file", hostFile}});
    });
    std::cout << "Core written to " << hostFile << "\n";
    return 0;
}

}  // namespace

SIM_TOOL({"/sbin/zrkbacktrace"}, &BacktraceMain);

}  // namespace Sim::Tools
