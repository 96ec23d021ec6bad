// The simulated host's state: one JSON document in the host root, read and
// changed under a file lock so that the console and the simulated host tools
// (separate processes) never see half-written state.
//
// The parsed document is kept in memory. Before it is used, the file is
// looked at (device, inode, size, modification and change times to the
// nanosecond); only a file that changed is read and parsed again. A change
// made through this store replaces the kept document directly. So a hand edit
// of the file shows at the next call, and a tool's write at once.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace Sim {

using Json = nlohmann::json;

// "<root>/var/lib/simhost/state.json".
std::string StatePath();

// True when the host root has a state file.
bool HasState();

// The state as it is now, shared and never changed afterwards: a later change
// makes a new document and leaves this one as it was. Throws
// std::runtime_error when there is no state file or it cannot be parsed.
std::shared_ptr<const Json> Snapshot();

// A copy of the whole state as it is now; throws like Snapshot().
Json Load();

// Reads, changes and writes the state as one step under an exclusive lock.
// The file is replaced atomically; a throwing change writes nothing.
void Update(const std::function<void(Json&)>& change);

// Replaces the whole state (used when a root is made).
void Save(const Json& state);

// A value by JSON pointer ("/advancedOptions/UserVars/TeskTimeOut"); none when
// the state or the value is missing.
std::optional<Json> Get(const std::string& pointer);

// A fault the state asks for at a named operation or tool, from
// "/faults/<name>": {"exitStatus": n, "hang": bool, "output": "...",
// "exception": "...", "errorCode": n}. None when no fault is set.
std::optional<Json> Fault(const std::string& name);

// How deep values of a state document may nest: the state's own structure is
// a few levels deep, and deeper documents would be walked recursively.
inline constexpr int kMaxNesting = 64;

// A JSON document from text, refusing nesting past kMaxNesting. Throws
// std::runtime_error saying what is wrong.
Json ParseDocument(const std::string& text);

// How often this process has parsed a state file.
unsigned long ParseCountForTesting();

}  // namespace Sim
