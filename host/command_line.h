// One command line run through the command runner, for backends whose tools
// are named by a line rather than an argument vector.
#pragma once

#include <string>

namespace Tesk {

// Runs `command` and returns its exit status (-1 when it could not be started
// or did not end normally; an empty command gives -1).
//
// useShell false: the line is split at white space; the first word is the
// program's host path, its last path component becomes element 0 of the
// vector ("/bin/zrkping -c 3 10.0.0.1" runs "/bin/zrkping" with "zrkping"
// "-c" "3" "10.0.0.1"). No quoting is understood. useShell true: the line is
// given to "/bin/sh -c" as it is.
// logOutcome: capture both streams and log "Command \"%s\" succeeded" or
// "Command \"%s\" failed (rc=%d): (stdout=%s, stderr=%s)"; otherwise the
// output is dropped and nothing is logged.
// throwOnFailure: a result other than 0 arrives as
// HostCtl::Lib::HostCtlException "Command \"<command>\" failed (rc=<n>)".
//
// timeLimit: as RunCommand's (0: none).
//
// Safe to call from worker threads. The screens call it with
// (false, true, false).
int RunCommandLine(const std::string& command, bool useShell, bool logOutcome, bool throwOnFailure,
                   int timeLimit = 0);

}  // namespace Tesk
