// "Test Management Network".
#include "network/test_dialog.h"
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
    void open(MenuContext& c) override {
        TestDialog test(&c.menu, c.host);
        Run(test);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTestNetworkEntry() {
    return std::make_unique<TestNetworkEntry>();
}

}  // namespace Tesk
