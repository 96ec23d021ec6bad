// "Test Management Network".
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class TestNetworkEntry : public FixedTextEntry {
public:
    TestNetworkEntry()
        : FixedTextEntry(StrId::TestManagementNetwork, StrId::TestManagementNetworkHelp,
                         Footer::kRunTestLogOut) {}
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTestNetworkEntry() {
    return std::make_unique<TestNetworkEntry>();
}

}  // namespace Tesk
