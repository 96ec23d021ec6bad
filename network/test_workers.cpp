// Workers of the management network test.
#include "network/test_workers.h"

#include <syslog.h>

#include <thread>

#include "host/command_line.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

std::string PingCommand(const std::string& address, const std::string& option) {
    std::string command = "/bin/zrkping -c 3 ";
    if (!option.empty()) command += option + " ";
    return command + address;
}

TestResultCell StartPing(const std::string& address) {
    auto cell = std::make_shared<std::atomic<int>>(kTestPending);
    std::thread([cell, command = PingCommand(address)] {
        int rc = 1;
        try {
            rc = Tesk::RunCommandLine(command, false, true, false);
        } catch (...) {
            rc = 1;
        }
        cell->store(rc < 0 ? 1 : rc);
    }).detach();
    return cell;
}

TestResultCell StartResolve(const std::string& hostname) {
    auto cell = std::make_shared<std::atomic<int>>(kTestPending);
    std::shared_ptr<HostCtl::Network::Resolver> resolver;
    try {
        resolver = HostCtl::TheBackend().GetResolver("defaultNetStack");
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Resolving %s failed: %s", hostname.c_str(), e.what());
        cell->store(1);
        return cell;
    }
    std::thread([cell, resolver, hostname] {
        int rc = 1;
        try {
            rc = resolver->Resolve(hostname) ? 0 : 1;
        } catch (const std::exception& e) {
            Platform::Log(LOG_ERR, "Resolving %s failed: %s", hostname.c_str(), e.what());
        } catch (...) {
        }
        cell->store(rc);
    }).detach();
    return cell;
}

}  // namespace Tesk
