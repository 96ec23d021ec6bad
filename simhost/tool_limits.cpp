// The simulated host tools' time limits, with the state's shortening.
#include "simhost/tool_limits.h"

#include "hostctl/exception.h"
#include "simhost/simhost.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Sim {

int ToolLimit(Tesk::ToolJob job) {
    int cap = 0;
    try {
        cap = Integer<int>(Object(*Snapshot(), "console"), "toolTimeLimitSeconds", 0);
    } catch (const HostCtl::Lib::HostCtlException&) {
        // The job's own limit stands.
    }
    return Tesk::TimeLimitSeconds(job, cap);
}

}  // namespace ZrkCtl::Sim
