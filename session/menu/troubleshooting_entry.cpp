// "Troubleshooting Options".
#include "admin/troubleshooting_window.h"
#include "session/menu/menu_entry.h"
#include "session/session.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class TroubleshootingEntry : public FixedTextEntry {
public:
    TroubleshootingEntry()
        : FixedTextEntry(StrId::TroubleshootingOptions, StrId::TroubleshootingOptionsHelp,
                         Footer::kMoreLogOut) {}
    void open(MenuContext& c) override {
        Session& session = c.session;
        TroubleShootingWindow window(
            &c.menu, c.host,
            {[&session] { return session.idleTimeout(); },
             [&session](int seconds) { session.setIdleTimeout(seconds); }});
        Run(window);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTroubleshootingEntry() {
    return std::make_unique<TroubleshootingEntry>();
}

}  // namespace Tesk
