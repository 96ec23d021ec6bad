// Runs a simulated host tool the way the console does: through the command
// runner, with the environment the console gives its children.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "host/runner.h"
#include "tests/host/host_root.h"

namespace TeskTest {

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

inline ToolRun RunTool(const std::string& path, std::initializer_list<const char*> args,
                       int timeLimit = 0) {
    const std::string name = path.substr(path.find_last_of('/') + 1);
    std::vector<const char*> argv = {name.c_str()};
    argv.insert(argv.end(), args.begin(), args.end());
    argv.push_back(nullptr);
    char out[Tesk::kCaptureBufferSize] = {};
    char err[Tesk::kCaptureBufferSize] = {};
    int outLength = Tesk::kCaptureCapacity;
    int errLength = Tesk::kCaptureCapacity;
    ToolRun run;
    run.status = Tesk::RunCommand(path.c_str(), argv.data(), out, &outLength, err, &errLength,
                                  nullptr, 0, timeLimit);
    run.out.assign(out, std::max(outLength, 0));
    run.err.assign(err, std::max(errLength, 0));
    return run;
}

}  // namespace TeskTest
