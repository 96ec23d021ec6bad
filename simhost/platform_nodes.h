// The platform's providers that the simulated host answers from its state.
#pragma once

namespace ZrkCtl {

// Installs ZSI_Get's provider ("/system", "/bootOption"; the faults
// "zsi.systemVersion" and "zsi.bootOption" make a read fail), the event
// service's start-up check (the fault "noxUserLib.init" with its
// "errorCode") and the virtual-terminal switch, which records the terminal in
// "/console/activeVt".
void InstallPlatformProviders();

}  // namespace ZrkCtl
