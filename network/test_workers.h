// The background work of the management network test: each ping and the
// name resolution run in a detached thread that writes only its own result
// cell. The host object a worker uses is made on the UI thread and moved into
// the worker, and the cell is shared between the screen and the worker, so a
// worker that outlives an interrupted test still uses and writes only live
// memory that nobody reads any more.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "host/host_context.h"

namespace Tesk {

// -1 while the step runs; then its outcome, 0 meaning success.
using TestResultCell = std::shared_ptr<std::atomic<int>>;
inline constexpr int kTestPending = -1;

// Starts a detached worker pinging target (an address, a link-local IPv6 one
// with its scope) through the host's echo test; the cell gets 0 when the
// target answered, 1 otherwise.
TestResultCell StartPing(const HostContext& host, const std::string& target);

// Starts a detached worker resolving the name through the host's DNS
// settings (never the hosts file); the cell gets 0 when the name resolved,
// 1 otherwise (a host failure is logged).
TestResultCell StartResolve(const HostContext& host, const std::string& hostname);

}  // namespace Tesk
