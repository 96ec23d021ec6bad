// The echo test through "/bin/zrkping -c 3 <target>", its outcome logged as a
// command line's ("Command \"zrkping -c 3 ...\" succeeded").
#include "simhost/pinger.h"

#include "host/command_line.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Network {

bool PingerImpl::Ping(const std::string& target) const {
    return Tesk::RunCommandLine("/bin/zrkping -c 3 " + target, false, true, false,
                                Sim::ToolLimit(Tesk::ToolJob::Ping)) == 0;
}

}  // namespace ZrkCtl::Network
