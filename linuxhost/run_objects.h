// The makers of the Linux backend's running parts (backend_machine.cpp hands
// them out): one file each.
#pragma once

#include <memory>

#include "hostctl/agents.h"
#include "hostctl/lockdown.h"
#include "hostctl/power.h"
#include "hostctl/shell_services.h"
#include "hostctl/system.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Resource::ResourceInfo> MakeResourceInfo();        // virtual_machines.cpp
std::unique_ptr<HostCtl::Power::PowerControl> MakePowerControl();           // power.cpp
std::unique_ptr<HostCtl::Services::ShellServices> MakeShellServices();      // shell_services.cpp
std::unique_ptr<HostCtl::Agents::ManagementAgents> MakeManagementAgents();  // agents.cpp
std::unique_ptr<HostCtl::Lockdown::LockdownMode> MakeLockdownMode();        // lockdown.cpp

}  // namespace LinuxHost
