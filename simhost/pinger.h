// The simulated host's echo test: its ping tool.
#pragma once

#include "hostctl/pinger.h"

namespace ZrkCtl::Network {

class PingerImpl : public HostCtl::Network::Pinger {
public:
    bool Ping(const std::string& target) const override;
};

}  // namespace ZrkCtl::Network
