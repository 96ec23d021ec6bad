// "Network Adapters": which physical adapters carry the management network,
// in order of preference. Space checks an adapter (appending it to the
// selection) or clears it; D shows an adapter's details; Enter takes the
// selection, after a warning when an adapter is already used by a switch
// other than the management one. Also the two small dialogs it opens.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_context.h"
#include "host/queries.h"
#include "ui/confirm_dialog.h"
#include "ui/form_dialog.h"

namespace Tesk {

class AdaptersDialog : public FormDialog {
public:
    // Reads the adapters from the host.
    AdaptersDialog(Window* opener, const HostContext& host, std::vector<std::string> selection,
                   std::int32_t activeUplinks, std::string managementSwitch);
    // False when the adapters could not be read (logged): the dialog is not
    // to be shown.
    bool loaded() const { return loaded_; }
    // 1 when the selection is taken; 0 at once when nothing was loaded.
    int run() override;

    const std::vector<std::string>& selection() const { return selection_; }
    std::int32_t activeUplinks() const { return activeUplinks_; }

protected:
    KeyResult onKey(int key) override;
    KeyResult accept() override;

private:
    CheckItem* row(int ordinal);

    std::vector<std::string> selection_;
    std::int32_t activeUplinks_;
    std::string managementSwitch_;
    std::vector<PnicSummary> adapters_;
    UplinkOwnerMap owners_;
    bool loaded_;
};

// One adapter's label, MAC address, link and owner; only Enter closes it.
class AdapterInfoDialog : public ConfirmDialog {
public:
    AdapterInfoDialog(Window* opener, const PnicSummary& adapter);
};

// "Remove these adapters from their current connections?": Enter answers 1,
// Esc 0.
class UsedAdaptersDialog : public ConfirmDialog {
public:
    explicit UsedAdaptersDialog(Window* opener);
};

}  // namespace Tesk
