// The simulated host's support information: its support file.
#pragma once

#include "hostctl/support_info.h"

namespace ZrkCtl::Support {

class SupportInformationImpl : public HostCtl::Support::SupportInformation {
public:
    std::string GetSupportText() const override;
};

}  // namespace ZrkCtl::Support
