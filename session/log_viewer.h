// The system log viewer: the pager that shows one of the host's logs with the
// terminal handed over to it.
#pragma once

#include <string>
#include <vector>

namespace Tesk {

class Window;

// Shows a log in the pager over window w (which takes the terminal back and
// is drawn again afterwards).
void ViewLog(Window& w, const std::string& logHostPath);

// Runs the pager on a log with the terminal handed over to it, and takes the
// terminal back afterwards. pager is the host path of the pager program.
// Returns the pager's exit status, or -1 when it could not be run.
//
// The pager is fenced in: its environment holds only TERM, TERMINFO, the
// locale variables and LESSSECURE=1; it runs in a process group of its own,
// which is killed when the pager ends (nothing it started outlives it); a
// quit signal to the console (Platform::NoteQuitRequest) ends that group
// (SIGTERM, SIGKILL a second later). A resize while the pager ran reached only
// the pager: when the terminal's size changed, the console sends itself
// SIGWINCH on return, so that it acts on the resize as on any other.
int ViewWithPager(const std::string& pagerHostPath, const std::string& logHostPath);

}  // namespace Tesk
