// Host profiles: the state a new simulated host root starts from.
#pragma once

#include <string>
#include <vector>

namespace Sim {

struct Profile {
    const char* name;  // the file name without ".json"
    const char* json;
};

// Every profile under sim/profiles, built into the program.
const std::vector<Profile>& Profiles();

}  // namespace Sim
