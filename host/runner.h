// Running host command-line tools as child processes and judging them by
// their exit status, and the wrappers host backends build on (screens reach
// the host through the hostctl/ interfaces, never through these).
//
// Every absolute path names a host path and is resolved against the host root
// (Tesk::Platform::HostPath), so "/bin/rux-cmd" runs <root>/bin/rux-cmd under
// a simulated root. Argument vectors are arrays of texts ended by a null
// entry; element 0 is the program's short name, not its path.
#pragma once

#include <string>
#include <string_view>

namespace Tesk {

// The console's own account for the management tool.
inline constexpr const char kServiceAccount[] = "tesk";

// Size of the buffers callers use to capture a stream: the capacity they pass
// is one less, so that a NUL fits at the returned count.
inline constexpr int kCaptureBufferSize = 256;
inline constexpr int kCaptureCapacity = kCaptureBufferSize - 1;

// The limit the management-tool queries run under, in seconds.
inline constexpr int kQueryTimeLimit = 120;

// How one run of a child ended, for callers that report or judge more than
// the exit status.
struct CommandOutcome {
    enum class End {
        Exited,       // it ended by itself: `status` is its exit status
        Signalled,    // a signal ended it (not one of the runner's): `signal`
        TimedOut,     // killed with its process group at `timeLimit`
        Interrupted,  // the console is ending: ended with its process group, or not started
        NotStarted,   // it could not be started: `error` is the errno
        WaitFailed,   // waiting for it failed: `error`
    };
    End end = End::NotStarted;
    int status = 0;
    int signal = 0;
    int error = 0;
    int timeLimit = 0;

    // What RunCommand answers: the exit status, or -1.
    int result() const { return end == End::Exited ? status : -1; }
    // For log lines: "exit status 3", "ended by signal 9 (Killed)", "killed at
    // its time limit of 120 seconds", "ended because the console is ending",
    // "could not be started: No such file or directory".
    std::string describe() const;
};

// Starts `path` with `argv`, an environment of exactly "PYTHONHOME=/", its
// standard input, output and error on pipes, and waits for it.
//
// output/outputLength: when output is given, *outputLength is its capacity on
// entry and the number of bytes captured on return (-1 when reading failed);
// the buffer is never NUL-terminated here. Bytes beyond the capacity are read
// and dropped, so a talkative child never blocks. error/errorLength likewise
// for standard error. input/inputLength: bytes written to the child's
// standard input, which is then closed.
//
// timeLimit: seconds; 0 or less waits without limit. At the limit the child
// is killed, "Killing process because %d seconds timeout expired" is logged at
// warning level, and whatever it wrote so far is returned.
//
// The child runs in a process group of its own and is killed by the kernel
// when the console dies (even by SIGKILL). At the time limit the whole group
// is killed. When the console is asked to quit while the child runs
// (Platform::NoteQuitRequest) the group gets SIGTERM, then SIGKILL one second
// later, "Killing process group because the console is ending" is logged at
// warning level, and the run ends at once; once a quit was noted no child is
// started at all ("Not starting %s: the console is ending"). A run that lasts
// longer than Platform::kSlowWaitMilliseconds is announced through
// Platform::NotifySlowWait (true, then false at its end).
//
// Returns the child's exit status (0-255), or -1 when it could not be
// started (silently), was killed, or did not end normally ("Run Command did
// not terminate normally" at error level). Safe to call from several threads.
int RunCommand(const char* path, const char* const argv[], char* output, int* outputLength,
               char* error, int* errorLength, const char* input, int inputLength, int timeLimit);

// RunCommand that tells how the child ended.
CommandOutcome RunCommandDetailed(const char* path, const char* const argv[], char* output,
                                  int* outputLength, char* error, int* errorLength,
                                  const char* input, int inputLength, int timeLimit);

// The wrappers below take the time limit of RunCommand last (seconds; 0 or
// less: none). The host backends pass their job's limit (host/time_limits.h);
// only tests and the simulated tools among themselves run without one.

// "/bin/sh" "sh" "-c" line; nothing captured, no input.
int RunShellCommand(const char* line, int timeLimit = 0);

// Runs with both streams captured (255 bytes each) and logs
// "Command \"%s\" succeeded" or "Command \"%s\" failed (rc=%d): (stdout=%s, stderr=%s)".
int RunCommandLogged(const char* path, const char* const argv[], int timeLimit = 0);

// Runs "/bin/kovacli" with standard output captured and logs
// "Command \"%s\" succeeded" or "Command \"%s\" failed (rc=%d): %s".
int RunKovacli(const char* const argv[], int timeLimit = 0);

// The standard port-group command through RunKovacli; true on exit status 0.
bool AddStandardPortGroup(const std::string& portGroup, const std::string& vswitch,
                          int timeLimit = 0);

// Runs a management-tool command "rux-cmd" "-U" user command.... When the
// tool answers 255 (the user may not run it), logs and runs it once more as
// kServiceAccount, under the same limit. The caller's vector is left
// unchanged.
int RuxCmdRun(const char* path, const char* const argv[], char* output, int* outputLength,
              char* error, int* errorLength, const char* input, int inputLength, int timeLimit = 0);

// Asks the management agent to reload its view of the host
// ("internalsvc/refresh" as user, the logged-in user); the result is ignored.
void RefreshHostAgent(const std::string& user, int timeLimit = 0);

// A true/false management-tool query ("ruxsvc/auth/lockdown_is_enabled") run
// as kServiceAccount under timeLimit: true exactly when the tool ended by
// itself (whatever its exit status) and its answer begins with "true". A tool
// killed at the limit, by a signal or because the console is ending answers
// false, whatever it printed before. A failure is logged as "rux-cmd
// invocation failure: <how it ended>".
bool RuxCmdGet(const char* query, int timeLimit = kQueryTimeLimit);

// The auto-stop sequence as user (the logged-in user), then
// "/bin/powerOffVms" (with "--terminate" unless graceful); results are
// ignored. Each of the two runs under timeLimit.
void PowerOffVms(const std::string& user, bool graceful, int timeLimit = 0);

// Trims and collapses runs of white space into single blanks.
std::string CollapseWhitespace(std::string_view text);

// The vector's elements joined by single blanks (empty for a null vector or
// a null element 0).
std::string JoinArguments(const char* const argv[]);

}  // namespace Tesk
