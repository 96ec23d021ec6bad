// The smart cards' comings and goings as the console's key reader hears of
// them: a thread blocked in pcscd's status change raises SIGUSR1 on the
// console (as the simulated host's card does) when a card is put into or
// taken out of a reader, or a reader with a card comes or goes.
#pragma once

namespace LinuxHost {

// Starts the watch once, where pcscd listens; does nothing otherwise or when
// it runs already. Called after the first frame (it loads libpcsclite).
void WatchSmartCards();

}  // namespace LinuxHost
