// The background work of the management network test: each ping and the
// name resolution run in a detached thread that writes only its own result
// cell. The cell is shared between the screen and the worker, so a worker
// that outlives an interrupted test still writes into live memory that
// nobody reads any more.
#pragma once

#include <atomic>
#include <memory>
#include <string>

namespace Tesk {

// -1 while the step runs; then its outcome, 0 meaning success.
using TestResultCell = std::shared_ptr<std::atomic<int>>;
inline constexpr int kTestPending = -1;

// The ping command line: "/bin/zrkping -c 3 ", the option text and a blank
// when there is one, then the address (with its scope suffix).
std::string PingCommand(const std::string& address, const std::string& option = {});

// Starts a detached worker running the ping through the host-control
// executor; the cell gets the command's exit status (1 when it could not be
// run at all).
TestResultCell StartPing(const std::string& address);

// Starts a detached worker resolving the name through the host's DNS
// settings (never the hosts file); the cell gets 0 when the name resolved,
// 1 otherwise (a host failure is logged).
TestResultCell StartResolve(const std::string& hostname);

}  // namespace Tesk
