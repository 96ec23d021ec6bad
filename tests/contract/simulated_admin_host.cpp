// The administration contract's host for the simulated backend: a fresh root
// made by tesk-sim, the host tools' faults for the refusals, and the tools'
// records in the state for what the interfaces do not tell.
#include <sys/stat.h>

#include <filesystem>
#include <vector>

#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "tests/contract/admin_host.h"
#include "tests/harness/sim_root.h"

namespace ContractTest {
namespace {

using HostCtl::Services::Service;
using TeskTest::Json;

constexpr char kSupportFile[] = "/etc/brelt/support";

class SimulatedAdminHost : public AdminHost {
public:
    SimulatedAdminHost() {
        Tesk::Platform::SetHostRootForTesting(root_.path());
        backend_ = ZrkCtl::MakeSimulatedBackend();
    }
    ~SimulatedAdminHost() override { Tesk::Platform::SetHostRootForTesting(""); }

    const HostCtl::Backend& backend() const override { return *backend_; }

    std::string refuse(Refusal what) override {
        const Json fails = {{"exitStatus", 1}};
        switch (what) {
            case Refusal::ServiceManagement:
                return fault({"rux-cmd"}, fails);
            case Refusal::ServiceSwitching:
                return fault({"rux-cmd", "KovaShell", "SSH"}, fails);
            case Refusal::TimeoutStore:
                return fault({"kovacfg-advcfg", "kovacli", "kovacli-local"}, fails);
            case Refusal::LockdownChange:
                fault({"rux-cmd:ruxsvc/auth/lockdown_mode_enter",
                       "rux-cmd:ruxsvc/auth/lockdown_mode_exit"},
                      {{"error", "Agent busy:\n  try later\n"}, {"exitStatus", 2}});
                return "Agent busy: try later";
            case Refusal::LockdownQuery:
                return fault({"rux-cmd:ruxsvc/auth/lockdown_is_enabled",
                              "rux-cmd:ruxsvc/auth/lockdown_is_possible"},
                             {{"output", "true"}, {"signal", 9}});
            case Refusal::Backup:
                return fault({"backup.sh"}, fails);
            case Refusal::FactoryReset:
            case Refusal::ExtensionRemoval:
                return fault({"factoryConfig.py"}, fails);
            case Refusal::ExtensionList:
                return fault({"kovacli"}, fails);
        }
        return {};
    }
    void allow() override {
        for (const auto& name : faults_) root_.setFault(name, nullptr);
        faults_.clear();
    }

    void setLockdownPossible(bool possible) override {
        root_.editState([&](Json& s) { s["lockdown"]["possible"] = possible; });
    }
    void setCustomExtensionsInstalled(bool installed) override {
        root_.editState([&](Json& s) {
            s["customExtensions"] = Json::array();
            if (installed)
                s["customExtensions"].push_back(
                    {{"name", "acme-tools"}, {"version", "1.0"}, {"vendor", "Acme"}});
        });
    }
    void setSupportText(const std::optional<std::string>& text) override {
        std::filesystem::remove(root_.path(kSupportFile));
        if (text) root_.writeFile(kSupportFile, *text);
    }
    void makeSupportTextUnreadable() override {
        std::filesystem::remove(root_.path(kSupportFile));
        ASSERT_EQ(::mkfifo(root_.path(kSupportFile).c_str(), 0644), 0);
    }

    bool startsAtBoot(Service service) const override {
        return value("/services/" + name(service) + "/enabled") == Json(true);
    }
    int restarts(Service service) const override {
        return count("/services/" + name(service) + "/restarts");
    }
    bool sshFirewallOpen() const override {
        for (const Json& ruleset : value("/systemInfo/firewall/rulesets"))
            if (ruleset.value("id", "") == "sshServer") return ruleset.value("active", false);
        return false;
    }
    std::string lastActingUser() const override {
        const Json requests = value("/hostAgent/requests");
        return requests.empty() ? "" : requests.back().value("user", "");
    }
    int backups() const override { return count("/configBackup/runs"); }

private:
    static std::string name(Service service) {
        return service == Service::Shell ? "KovaShell" : "SSH";
    }
    Json value(const std::string& pointer) const {
        return root_.stateValue(pointer).value_or(Json());
    }
    int count(const std::string& pointer) const {
        const Json n = value(pointer);
        return n.is_number_integer() ? n.get<int>() : 0;
    }
    std::string fault(const std::vector<std::string>& names, const Json& how) {
        for (const auto& name : names) {
            root_.setFault(name, how);
            faults_.push_back(name);
        }
        return {};
    }

    TeskTest::SimRoot root_;
    std::unique_ptr<HostCtl::Backend> backend_;
    std::vector<std::string> faults_;
};

}  // namespace

std::unique_ptr<AdminHost> MakeSimulatedAdminHost() {
    return std::make_unique<SimulatedAdminHost>();
}

}  // namespace ContractTest
