// The platform's providers that the simulated host answers from its state.
#pragma once

namespace ZrkCtl {

// Installs ZSI_Get's provider ("/system", "/bootOption"; the faults
// "zsi.systemVersion" and "zsi.bootOption" make a read fail) and the event
// service's start-up check (the fault "noxUserLib.init" with its
// "errorCode").
void InstallPlatformProviders();

}  // namespace ZrkCtl
