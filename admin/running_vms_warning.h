// The question asked before an operation that stops the host's virtual
// machines or cuts them off (shut down, restart, the factory network restore).
#pragma once

namespace Tesk {

class Window;

// Shown over opener; true on <Enter>, false on <Esc>. Every other key is ignored.
bool ConfirmRunningVms(Window* opener);

}  // namespace Tesk
