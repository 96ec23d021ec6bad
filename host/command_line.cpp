#include "host/command_line.h"

#include <sstream>
#include <vector>

#include "host/runner.h"
#include "hostctl/exception.h"

namespace Tesk {

int RunCommandLine(const std::string& command, bool useShell, bool logOutcome, bool throwOnFailure,
                   int timeLimit) {
    std::vector<std::string> words;
    if (useShell) {
        words = {"/bin/sh", "sh", "-c", command};
    } else {
        std::istringstream in(command);
        for (std::string word; in >> word;) words.push_back(word);
        if (!words.empty()) {
            std::string name = words[0].substr(words[0].find_last_of('/') + 1);
            words.insert(words.begin() + 1, name);
        }
    }
    int rc = -1;
    if (!words.empty()) {
        std::vector<const char*> argv;
        for (size_t i = 1; i < words.size(); ++i) argv.push_back(words[i].c_str());
        argv.push_back(nullptr);
        const char* path = words[0].c_str();
        rc = logOutcome ? RunCommandLogged(path, argv.data(), timeLimit)
                        : RunCommand(path, argv.data(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                     0, timeLimit);
    }
    if (rc != 0 && throwOnFailure)
        throw HostCtl::Lib::HostCtlException("Command \"" + command +
                                             "\" failed (rc=" + std::to_string(rc) + ")");
    return rc;
}

}  // namespace Tesk
