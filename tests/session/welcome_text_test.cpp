// The welcome screen's hardware lines and the places of its lower texts, for the
// values a screen test cannot reach cheaply: unit boundaries, rounding, odd vendor
// strings, tiny panels.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "session/welcome_window.h"

namespace {

using Tesk::Welcome::MemoryLine;
using Tesk::Welcome::ProcessorLine;
using Tesk::Welcome::VendorLine;

constexpr unsigned long long kMiB = 1ULL << 20, kGiB = 1ULL << 30, kTiB = 1ULL << 40;

TEST(WelcomeText, MemoryPicksTheLargestUnitAndKeepsOneDecimal) {
    EXPECT_EQ(MemoryLine(16 * kGiB), "16 GiB Memory");
    EXPECT_EQ(MemoryLine(kTiB), "1 TiB Memory");
    EXPECT_EQ(MemoryLine(1024 * kTiB), "1 PiB Memory");
    EXPECT_EQ(MemoryLine(kGiB - kMiB), "1023 MiB Memory");
    EXPECT_EQ(MemoryLine(kMiB / 2), "0.5 MiB Memory");
    // 15.94 GiB rounds to one decimal; 15.96 to a whole number.
    EXPECT_EQ(MemoryLine(static_cast<unsigned long long>(15.94 * kGiB)), "15.9 GiB Memory");
    EXPECT_EQ(MemoryLine(static_cast<unsigned long long>(15.96 * kGiB)), "16 GiB Memory");
}

TEST(WelcomeText, VendorIsPrefixedOnlyWhenTheModelLacksIt) {
    EXPECT_EQ(VendorLine("Acme", "Acme Server 9"), "Acme Server 9");
    EXPECT_EQ(VendorLine(" Acme\t", "  Server 9 \n"), "Acme Server 9");
    EXPECT_EQ(VendorLine("", " Server 9"), "Server 9");
    // A model that is only part of the vendor's name does not count as prefixed.
    EXPECT_EQ(VendorLine("Acme Systems", "Acme"), "Acme Systems Acme");
    EXPECT_EQ(VendorLine("acme", "Acme Server"), "acme Acme Server");
}

TEST(WelcomeText, ProcessorCountOnlyFromTwoPackages) {
    EXPECT_EQ(ProcessorLine(0, " Zentium "), "Zentium");
    EXPECT_EQ(ProcessorLine(1, "Zentium"), "Zentium");
    EXPECT_EQ(ProcessorLine(4, " Zentium\t"), "4 x Zentium");
}

}  // namespace
