// The simulated host under the contract: each host is a fresh root made by
// tesk-sim from the profile of the shape, and a failure is a fault in
// the root's state ("/faults/<name>", docs/simulated-host.md).

#include <cctype>
#include <map>
#include <string_view>

#include "platform/host_platform.h"
#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#include "tests/contract/backend_fixture.h"
#include "tests/harness/sim_root.h"

namespace {

using TeskContract::Capability;
using TeskContract::Shape;
using TeskTest::Json;

std::string LowerFirst(std::string_view name) {
    std::string text(name);
    if (!text.empty())
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

// The simulated host's fault name of an operation named by interface and
// method: the two with their first letters in lower case ("ZrkNic.SetIpConfig"
// is "zrkNic.setIpConfig"), where the simulated host does not name the
// interface or the operation otherwise.
std::string FaultName(const std::string& operation) {
    static const std::map<std::string_view, std::string_view> kOperations = {
        {"AdvancedOption.SetIntOption", "adv.setOption"},
        {"Backend.StoreUserAccountsToCs", "authentication.storeUserAccountsToCs"},
    };
    static const std::map<std::string_view, std::string_view> kInterfaces = {
        {"NetworkInfo", "network"}, {"VirtualSwitchInfo", "vswitchInfo"}, {"Portset", "vswitch"},
        {"QdsSwitch", "qds"},       {"RoutingInfo", "routing"},           {"DnsConfig", "dns"},
        {"SystemInfo", "system"},   {"FirewallRuleset", "firewall"},
    };
    if (auto own = kOperations.find(operation); own != kOperations.end())
        return std::string(own->second);
    const auto dot = operation.find('.');
    const std::string_view interface = std::string_view(operation).substr(0, dot);
    const auto known = kInterfaces.find(interface);
    return (known != kInterfaces.end() ? std::string(known->second) : LowerFirst(interface)) + "." +
           LowerFirst(std::string_view(operation).substr(dot + 1));
}

class SimulatedFixture : public TeskContract::BackendFixture {
public:
    ~SimulatedFixture() override {
        Tesk::Platform::InstallHostPlatform(nullptr);
        Tesk::Platform::SetHostRootForTesting("");
    }

    std::optional<std::string> Lacks(Capability) const override { return std::nullopt; }

    std::unique_ptr<HostCtl::Backend> Start(Shape shape) override {
        root_ = std::make_unique<TeskTest::SimRoot>(Profile(shape));
        Tesk::Platform::SetHostRootForTesting(root_->path());
        // The root's own devices and log.
        Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());
        return ZrkCtl::MakeSimulatedBackend();
    }

    void FailOperation(const std::string& operation, const std::string& text) override {
        root_->setFault(FaultName(operation), {{"exception", text}});
    }

    void Recover() override {
        root_->editState([](Json& state) { state["faults"] = Json::object(); });
    }

    void InsertSmartCard(const std::vector<std::string>& userIds) override {
        root_->editState([&](Json& state) {
            state["smartCards"]["slots"][0]["token"] = {{"userIds", userIds}};
        });
    }

private:
    static const char* Profile(Shape shape) {
        return shape == Shape::Bare                         ? "nonic"
               : shape == Shape::ManagedOnDistributedSwitch ? "qds"
                                                            : "default";
    }

    std::unique_ptr<TeskTest::SimRoot> root_;
};

}  // namespace

TESK_CONTRACT_BACKEND("simulated", SimulatedFixture);
