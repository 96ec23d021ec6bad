// The host's virtual terminals: the one place the console switches the active
// terminal. The installed platform hooks do it: on the machine through its
// console; a simulated host never touches the machine's console and records
// the terminal instead.
#pragma once

namespace Tesk::Platform {

// Makes vt the active virtual terminal through the installed platform hooks
// (HostPlatform::ActivateVirtualTerminal, platform/host_platform.h).
void ActivateVirtualTerminal(int vt);

}  // namespace Tesk::Platform
