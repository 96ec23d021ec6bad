// The contract of the host's own facts and settings: hardware, system
// information (keyboard layouts, alerts), running virtual machines, advanced
// options and the user-account store. The firewall and smart cards are the
// screen tests' (tests/admin, tests/session), against the simulated host.
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
}

TEST_F(SystemContract, TheIdleTimeoutIsAnIntegerOption) {
    auto options = host().GetAdvancedOptions();
    auto timeout = options->GetOption(kTimeout);
    ASSERT_TRUE(timeout);
    EXPECT_EQ(timeout->type, OptionValue::Type::Integer);
    options->SetIntOption(kTimeout, 300);
    EXPECT_EQ(options->GetOption(kTimeout)->intValue, 300);
}

}  // namespace
