// The host's virtual terminals: the one place the console switches the active
// terminal. On the real host root it asks the kernel's console; on a
// simulated root it never touches the machine's console and asks the
// simulated host instead, which records the terminal in its state.
#pragma once

namespace Tesk::Platform {

// Makes vt the active virtual terminal.
// - Real root ("/"): through "/dev/console", VT_ACTIVATE, and only when that
//   fails VT_WAITACTIVE; nothing happens when the device cannot be opened.
// - Simulated root: through the installed provider, and logged ("Activated
//   virtual terminal %d of the simulated host"); without a provider, or when
//   it fails, nothing is switched and that is logged.
void ActivateVirtualTerminal(int vt);

// Records vt as the active terminal of the simulated host; false when that
// failed. The simulated host backend installs it (null: none).
using VirtualTerminalProvider = bool (*)(int vt);
void SetVirtualTerminalProvider(VirtualTerminalProvider provider);

}  // namespace Tesk::Platform
