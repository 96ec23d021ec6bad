// The lock every reader and writer of a state file takes: an flock on
// "<state file>.lock", shared to read, exclusive to change.
#pragma once

#include <string>

namespace Sim {

class StateLock {
public:
    enum class Mode { Shared, Exclusive };

    // Waits for the lock on statePath's lock file, which is made when
    // missing. Without the state's folder there is nothing to lock and the
    // object holds no lock (a read then fails on the missing file anyway).
    // A lock file that is not a regular file (a link, a folder, a FIFO) is
    // refused: throws std::runtime_error ("... is not a regular file: PATH").
    StateLock(const std::string& statePath, Mode mode);
    ~StateLock();
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;

private:
    int fd_ = -1;
};

}  // namespace Sim
