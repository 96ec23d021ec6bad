// The management tool and the virtual-machine power-off sequence.
#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "host/runner.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

constexpr const char kRuxCmd[] = "/bin/rux-cmd";
void RunAsUser(const std::string& user, const char* command, int timeLimit) {
    const char* argv[] = {"rux-cmd", "-U", user.c_str(), command, nullptr};
    RuxCmdRun(kRuxCmd, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, timeLimit);
}

const char* ArgumentOrEmpty(const std::vector<const char*>& args, size_t i) {
    return i < args.size() && args[i] ? args[i] : "";
}

}  // namespace

int RuxCmdRun(const char* path, const char* const argv[], char* output, int* outputLength,
              char* error, int* errorLength, const char* input, int inputLength, int timeLimit) {
    const int outputCapacity = outputLength ? *outputLength : 0;
    const int errorCapacity = errorLength ? *errorLength : 0;
    int rc = RunCommand(path, argv, output, outputLength, error, errorLength, input, inputLength,
                        timeLimit);
    if (rc != 255) return rc;

    std::vector<const char*> retry;
    for (size_t i = 0; argv && argv[i]; ++i) retry.push_back(argv[i]);
    Platform::Log(LOG_INFO, "Unable to execute command rux-cmd %s using user %s. Using user %s",
                  ArgumentOrEmpty(retry, 3), ArgumentOrEmpty(retry, 2), kServiceAccount);
    while (retry.size() < 3) retry.push_back("");
    retry[2] = kServiceAccount;
    retry.push_back(nullptr);
    // The retry captures into the same buffers with the caller's capacities.
    if (outputLength) *outputLength = outputCapacity;
    if (errorLength) *errorLength = errorCapacity;
    return RunCommand(path, retry.data(), output, outputLength, error, errorLength, input,
                      inputLength, timeLimit);
}

void RefreshHostAgent(const std::string& user, int timeLimit) {
    RunAsUser(user, "internalsvc/refresh", timeLimit);
}

bool RuxCmdGet(const char* query, int timeLimit) {
    std::string path;
    try {
        path = query ? query : "";
    } catch (const std::bad_alloc&) {
        Platform::Log(LOG_ERR, "rux-cmd invocation failure: %s", std::strerror(ENOMEM));
        return false;
    }
    Platform::Log(LOG_INFO, "rux-cmd invocation: get %s", path.c_str());
    const char* argv[] = {"rux-cmd", "-U", kServiceAccount, path.c_str(), nullptr};
    char out[kCaptureBufferSize] = {};
    int outLength = kCaptureCapacity;
    const CommandOutcome outcome =
        RunCommandDetailed(kRuxCmd, argv, out, &outLength, nullptr, nullptr, nullptr, 0, timeLimit);
    out[outLength > 0 ? std::min(outLength, kCaptureCapacity) : 0] = '\0';
    if (outcome.result() != 0)
        Platform::Log(LOG_ERR, "rux-cmd invocation failure: %s", outcome.describe().c_str());
    // A tool stopped before its end gave no answer, whatever it printed.
    if (outcome.end != CommandOutcome::End::Exited) return false;
    return std::strncmp(out, "true", 4) == 0;
}

void PowerOffVms(const std::string& user, bool graceful, int timeLimit) {
    RunAsUser(user, "hostsvc/autostartmanager/autostop", timeLimit);
    const char* argv[] = {"powerOffVms", graceful ? nullptr : "--terminate", nullptr};
    RunCommand("/bin/powerOffVms", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, timeLimit);
}

}  // namespace Tesk
