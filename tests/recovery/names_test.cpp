// The names the repair dialogs accept for new switches and port groups.
#include <gtest/gtest.h>

#include <string>

#include "recovery/names.h"

using Tesk::ValidPortGroupName;
using Tesk::ValidSwitchName;

TEST(RepairNames, SwitchNamesAreShortAndPlain) {
    for (const char* name : {"zSwitch0", "a", "lab-switch_2.b", "A234567890123456789012345678901"})
        EXPECT_TRUE(ValidSwitchName(name)) << name;
    for (const char* name : {"", "zSwitch 0", "bad!", "tab\there", "ü-switch", "{red}",
                             "A2345678901234567890123456789012"})
        EXPECT_FALSE(ValidSwitchName(name)) << name;
}

TEST(RepairNames, PortGroupNamesMayHoldInnerBlanks) {
    for (const char* name : {"VM Network", "Management Network1", "vlan-20_b.x", "x"})
        EXPECT_TRUE(ValidPortGroupName(name)) << name;
    EXPECT_TRUE(ValidPortGroupName(std::string(59, 'p')));
    for (const char* name : {"", " lead", "trail ", "Net{work}", "semi;colon", "new\nline"})
        EXPECT_FALSE(ValidPortGroupName(name)) << name;
    EXPECT_FALSE(ValidPortGroupName(std::string(60, 'p')));
}
