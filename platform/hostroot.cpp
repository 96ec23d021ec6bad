#include "platform/hostroot.h"

#include <cstdlib>
#include <optional>

namespace Tesk::Platform {
namespace {

std::optional<std::string>& RootSlot() {
    static std::optional<std::string> root;
    return root;
}

std::string Normalise(std::string root) {
    if (root.empty()) return "/";
    while (root.size() > 1 && root.back() == '/') root.pop_back();
    return root;
}

}  // namespace

const std::string& HostRoot() {
    auto& slot = RootSlot();
    if (!slot) {
        const char* env = std::getenv("TESK_ROOT");
        slot = Normalise(env ? env : "");
    }
    return *slot;
}

bool IsSimulatedRoot() {
    return HostRoot() != "/";
}

std::string HostPath(std::string_view path) {
    if (path.empty() || path.front() != '/') return std::string(path);
    if (path == "/dev" || path.starts_with("/dev/")) return std::string(path);
    const std::string& root = HostRoot();
    if (root == "/") return std::string(path);
    return root + std::string(path);
}

void SetHostRootForTesting(std::string_view root) {
    if (root.empty())
        RootSlot().reset();
    else
        RootSlot() = Normalise(std::string(root));
}

}  // namespace Tesk::Platform
