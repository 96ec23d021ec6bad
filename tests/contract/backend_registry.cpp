// The backends the contract suite was built with, and the one a run uses:
// `contract_test --backend=NAME` (needed only when more than one is built).
#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <string_view>

#include "tests/contract/backend_fixture.h"

namespace TeskContract {
namespace {

std::map<std::string, FixtureMaker>& Registry() {
    static std::map<std::string, FixtureMaker> registry;
    return registry;
}

FixtureMaker chosen;

// Picks the backend by name (empty: the only one built); false with a
// message when that cannot be done.
bool Choose(const std::string& name) {
    const auto& registry = Registry();
    const auto it = name.empty() && registry.size() == 1 ? registry.begin() : registry.find(name);
    if (it != registry.end()) {
        chosen = it->second;
        return true;
    }
    std::string built;
    for (const auto& entry : registry) built += (built.empty() ? "" : ", ") + entry.first;
    std::cerr << "contract_test: "
              << (name.empty() ? "name a backend with --backend=NAME"
                               : "no backend \"" + name + "\" was built")
              << " (built: " << (built.empty() ? "none" : built) << ")\n";
    return false;
}

}  // namespace

bool RegisterBackend(const std::string& name, FixtureMaker make) {
    Registry()[name] = std::move(make);
    return true;
}

std::unique_ptr<BackendFixture> MakeChosenFixture() {
    return chosen();
}

}  // namespace TeskContract

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    std::string backend;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (!arg.starts_with("--backend=")) {
            std::cerr << "contract_test: unknown argument " << arg << "\n";
            return 2;
        }
        backend = arg.substr(std::string_view("--backend=").size());
    }
    // Listing the cases needs no backend.
    if (!GTEST_FLAG_GET(list_tests) && !TeskContract::Choose(backend)) return 2;
    return RUN_ALL_TESTS();
}
