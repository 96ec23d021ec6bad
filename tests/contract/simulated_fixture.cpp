// The simulated host under the contract: each host is a fresh root made by
// tesk-sim from the profile of the shape, a failure or refusal is a fault in
// the root's state ("/faults/<name>", docs/simulated-host.md), and what the
// interfaces do not read back is read from the tools' records in the state
// and from the root's log.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>
#include <filesystem>
#include <map>
#include <string_view>

#include "platform/host_platform.h"
#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#include "tests/contract/backend_fixture.h"
#include "tests/harness/sim_root.h"

namespace {

using HostCtl::Services::Service;
using TeskContract::Capability;
using TeskContract::HostRefusal;
using TeskContract::Shape;
using TeskTest::Json;

constexpr char kSupportFile[] = "/etc/brelt/support";

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

class SimulatedFixture : public TeskContract::BackendFixture, public TeskContract::HostConditions {
public:
    ~SimulatedFixture() override {
        Tesk::Platform::InstallHostPlatform(nullptr);
        Tesk::Platform::SetHostRootForTesting("");
    }

    std::optional<std::string> Lacks(Capability) const override { return std::nullopt; }

    std::unique_ptr<HostCtl::Backend> Start(Shape shape) override {
        root_ = std::make_unique<TeskTest::SimRoot>(Profile(shape));
        Tesk::Platform::SetHostRootForTesting(root_->path());
        // The root's own log, where the tools' runs are read back.
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

    HostConditions* Conditions() override { return this; }

    std::string Refuse(HostRefusal what) override {
        const Json fails = {{"exitStatus", 1}};
        switch (what) {
            case HostRefusal::ServiceManagement:
                return Fault({"rux-cmd"}, fails);
            case HostRefusal::ServiceSwitching:
                return Fault({"rux-cmd", "KovaShell", "SSH"}, fails);
            case HostRefusal::TimeoutStore:
                return Fault({"kovacfg-advcfg", "kovacli", "kovacli-local"}, fails);
            case HostRefusal::LockdownChange:
                Fault({"rux-cmd:ruxsvc/auth/lockdown_mode_enter",
                       "rux-cmd:ruxsvc/auth/lockdown_mode_exit"},
                      {{"error", "Agent busy:\n  try later\n"}, {"exitStatus", 2}});
                return "Agent busy: try later";
            case HostRefusal::LockdownQuery:
                return Fault({"rux-cmd:ruxsvc/auth/lockdown_is_enabled",
                              "rux-cmd:ruxsvc/auth/lockdown_is_possible"},
                             {{"output", "true"}, {"signal", 9}});
            case HostRefusal::Backup:
                return Fault({"backup.sh"}, fails);
            case HostRefusal::FactoryReset:
            case HostRefusal::ExtensionRemoval:
                return Fault({"factoryConfig.py"}, fails);
            case HostRefusal::ExtensionList:
                return Fault({"kovacli"}, fails);
            case HostRefusal::Ping:
                return Fault({"zrkping"}, {{"exitStatus", 2}});
            case HostRefusal::PortGroupCreation:
                return Fault({"kovacli.portgroup.add"}, fails);
            case HostRefusal::AgentStop:
                return Fault({"plex-opsagent:stop"}, fails);
            case HostRefusal::Migration:
                return Fault({"plexcfg-vswitch"}, fails);
        }
        return {};
    }

    void SetLockdownPossible(bool possible) override {
        root_->editState([&](Json& s) { s["lockdown"]["possible"] = possible; });
    }
    void SetCustomExtensionsInstalled(bool installed) override {
        root_->editState([&](Json& s) {
            s["customExtensions"] = Json::array();
            if (installed)
                s["customExtensions"].push_back(
                    {{"name", "acme-tools"}, {"version", "1.0"}, {"vendor", "Acme"}});
        });
    }
    void SetSupportText(const std::optional<std::string>& text) override {
        std::filesystem::remove(root_->path(kSupportFile));
        if (text) root_->writeFile(kSupportFile, *text);
    }
    void MakeSupportTextUnreadable() override {
        std::filesystem::remove(root_->path(kSupportFile));
        ASSERT_EQ(::mkfifo(root_->path(kSupportFile).c_str(), 0644), 0);
    }
    void InstallOperationsAgent(const char* version) override {
        root_->editState([&](Json& s) {
            if (version)
                s["vibs"]["plex-opsagent"] = {{"version", version}};
            else if (s.contains("vibs"))
                s["vibs"].erase("plex-opsagent");
        });
    }

    bool StartsAtBoot(Service service) const override {
        return Value("/services/" + Name(service) + "/enabled") == Json(true);
    }
    int Restarts(Service service) const override {
        return Count("/services/" + Name(service) + "/restarts");
    }
    bool SshFirewallOpen() const override {
        for (const Json& ruleset : Value("/systemInfo/firewall/rulesets"))
            if (ruleset.value("id", "") == "sshServer") return ruleset.value("active", false);
        return false;
    }
    std::string LastActingUser() const override {
        const Json requests = Value("/hostAgent/requests");
        return requests.empty() ? "" : requests.back().value("user", "");
    }
    int Backups() const override { return Count("/configBackup/runs"); }
    bool OperationsAgentRunning() const override {
        return root_->stateValue("/services/plex-opsagent/running").value_or(Json(true)) == true;
    }
    // From the runner's last log line "Command \"<line>\" succeeded ...".
    std::string LastToolRun() const override {
        const auto runs = root_->logLinesWith("Command \"");
        if (runs.empty()) return "";
        const std::string& last = runs.back();
        const auto open = last.find("Command \"") + 9;
        for (const std::string outcome : {"succeeded", "failed"})
            if (const auto end = last.rfind("\" " + outcome); end != std::string::npos)
                return last.substr(open, end - open) + " " + outcome;
        return last;
    }

private:
    static const char* Profile(Shape shape) {
        return shape == Shape::Bare                         ? "nonic"
               : shape == Shape::ManagedOnDistributedSwitch ? "qds"
                                                            : "default";
    }
    static std::string Name(Service service) {
        return service == Service::Shell ? "KovaShell" : "SSH";
    }
    Json Value(const std::string& pointer) const {
        return root_->stateValue(pointer).value_or(Json());
    }
    int Count(const std::string& pointer) const {
        const Json n = Value(pointer);
        return n.is_number_integer() ? n.get<int>() : 0;
    }
    std::string Fault(std::initializer_list<const char*> names, const Json& how) {
        for (const char* name : names) root_->setFault(name, how);
        return {};
    }

    std::unique_ptr<TeskTest::SimRoot> root_;
};

}  // namespace

TESK_CONTRACT_BACKEND("simulated", SimulatedFixture);
