// The contract of the host's own facts and settings: hardware, smart cards,
// system information (keyboard layouts, alerts, firewall rulesets), running
// virtual machines, advanced options and the user-account store.
#include <algorithm>
#include <cctype>

#include "tests/contract/contract.h"

namespace {

using namespace TeskContract;
using HostCtl::Backend;
using HostCtl::Adv::OptionValue;

constexpr char kTimeout[] = "/UserVars/TeskTimeOut";

class SystemContract : public OnManagedHost {};

TEST_F(SystemContract, HardwareFactsAreThereAndPlausible) {
    host().GetHardwareInfo()->GetVendorName();
    host().GetHardwareInfo()->GetProductName();
    auto cpu = host().GetCpuInfo();
    EXPECT_GE(cpu->GetNumCpuPackages(), 1);
    EXPECT_NE(cpu->GetModelName(), "");
    auto memory = host().GetMemoryInfo();
    const std::uint64_t page = memory->GetPageSize();
    EXPECT_TRUE(page >= 512 && (page & (page - 1)) == 0) << page << " is no page size";
    EXPECT_GT(memory->GetTotalPages(), 0u);
}

TEST_F(SystemContract, SmartCardReadersAndTheirTokens) {
    Need(Capability::SmartCards);
    if (IsSkipped()) return;
    auto cards = host().GetSmartCardInfo();
    const auto slots = cards->GetAllSlots();
    ASSERT_FALSE(slots.empty());
    for (size_t i = 0; i < slots.size(); ++i) EXPECT_EQ(slots[i].index, static_cast<int>(i));
    ExpectRefused({
        {"the token of an empty reader",
         [&](const Backend& b) { b.GetSmartCardInfo()->GetToken(slots[0]); }},
        {"the token of a reader the host lacks",
         [&](const Backend& b) {
             b.GetSmartCardInfo()->GetToken({"Reader 99", static_cast<int>(slots.size())});
         }},
    });
    fixture().InsertSmartCard({"alice@CORP.EXAMPLE"});
    EXPECT_EQ(cards->GetToken(slots[0]).userIds, std::vector<std::string>{"alice@CORP.EXAMPLE"});
}

TEST_F(SystemContract, KeyboardLayoutIsOneOfTheHostsByItsExactName) {
    auto info = host().GetSystemInfo();
    const auto layouts = info->GetKeyboardLayouts();
    ASSERT_GE(layouts.size(), 2u);
    EXPECT_NE(std::find(layouts.begin(), layouts.end(), info->GetKeyboardLayout()), layouts.end());
    const std::string other = layouts[0] == info->GetKeyboardLayout() ? layouts[1] : layouts[0];
    info->LoadKeyboardMappings(other);
    info->SetKeyboardLayout(other);
    EXPECT_EQ(info->GetKeyboardLayout(), other);

    std::string shouted = other;
    for (char& c : shouted) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    ExpectRefused({
        {"a layout by another spelling",
         [&](const Backend& b) { b.GetSystemInfo()->SetKeyboardLayout(shouted); }},
        {"a layout the host lacks",
         [](const Backend& b) { b.GetSystemInfo()->SetKeyboardLayout("Klingon"); }},
        {"the key map of a layout the host lacks",
         [](const Backend& b) { b.GetSystemInfo()->LoadKeyboardMappings("Klingon"); }},
    });
}

TEST_F(SystemContract, SystemFactsOfTheManagedHost) {
    auto info = host().GetSystemInfo();
    EXPECT_EQ(info->GetWelcomeMessage(), "");
    info->SetSystemAlert("Hagentd core dump completed");
    EXPECT_TRUE(host().GetResourceInfo()->HasRunningVirtualMachines());
    EXPECT_FALSE(host().GetUserAdvancedOptions()->HasUserOption("PXEBootEnabled"));
    host().StoreUserAccountsToCs();

    Need(Capability::FirewallRulesets);
    if (IsSkipped()) return;
    const auto ssh = info->GetFirewallRulesetById("sshServer");
    EXPECT_EQ(ssh.GetId(), "sshServer");
    EXPECT_TRUE(ssh.IsServiceControlled());
    ssh.SetEnabled(true);
    ssh.Apply();
    ExpectRefused({{"a ruleset the host lacks", [](const Backend& b) {
                        b.GetSystemInfo()->GetFirewallRulesetById("no-such-ruleset");
                    }}});
}

TEST_F(SystemContract, IntegerOptionsAreSetAndMadeWhenMissing) {
    auto options = host().GetAdvancedOptions();
    auto timeout = options->GetOption(kTimeout);
    ASSERT_TRUE(timeout);
    EXPECT_EQ(timeout->type, OptionValue::Type::Integer);
    options->SetIntOption(kTimeout, 300);
    EXPECT_EQ(options->GetOption(kTimeout)->intValue, 300);

    Need(Capability::NewAdvancedOptions);
    if (IsSkipped()) return;
    const char* made = "/UserVars/ContractProbe";
    EXPECT_FALSE(options->GetOption(made));
    options->SetIntOption(made, -1);
    ASSERT_TRUE(options->GetOption(made));
    EXPECT_EQ(options->GetOption(made)->type, OptionValue::Type::Integer);
    EXPECT_EQ(options->GetOption(made)->intValue, -1);
}

// The operations that change the host, made to fail.
TEST_F(SystemContract, FailuresLeaveTheHostAlone) {
    ExpectFailures({
        {"SystemInfo.SetKeyboardLayout",
         [](const Backend& b) {
             b.GetSystemInfo()->SetKeyboardLayout(b.GetSystemInfo()->GetKeyboardLayouts().at(0));
         }},
        {"FirewallRuleset.Apply",
         [](const Backend& b) { b.GetSystemInfo()->GetFirewallRulesetById("sshServer").Apply(); }},
        {"AdvancedOption.SetIntOption",
         [](const Backend& b) { b.GetAdvancedOptions()->SetIntOption(kTimeout, 1); }},
        {"Backend.StoreUserAccountsToCs", [](const Backend& b) { b.StoreUserAccountsToCs(); }},
    });
}

}  // namespace
