// "Migrate Zerkel NIC to Standard Switch": a Zerkel NIC connected to a chosen
// standard-switch port group by the network-virtualisation operations agent.
#pragma once

#include <memory>

#include "host/host_context.h"
#include "network/info_list.h"
#include "ui/carousel.h"
#include "ui/form_dialog.h"

namespace Tesk {

// Left/Right change the NIC or the port group, <D> shows the selected one's
// details. run(): 1 when the NIC was migrated, 0 when cancelled or failed.
// The agent is stopped for the migration and started again only when it had
// been running.
class MigrateZrknicDialog : public FormDialog {
public:
    MigrateZrknicDialog(Window* opener, const HostContext& host);
    int run() override;

private:
    KeyResult onKey(int key) override;

    const HostContext& host_;

    RadioGroup nicGroup_;
    RadioGroup portGroupGroup_;
    CarouselRadioItem<ZrkNicInfo>* nics_ = nullptr;
    CarouselRadioItem<PortGroupInfo>* portGroups_ = nullptr;
};

}  // namespace Tesk
