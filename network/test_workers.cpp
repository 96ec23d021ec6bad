// Workers of the management network test.
#include "network/test_workers.h"

#include <syslog.h>

#include <exception>
#include <functional>
#include <thread>

#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

// Makes the step's host object here, on the UI thread, and runs step on it
// in a detached worker that owns the object. failure is the log line of a
// host failure ("%s": the subject, then the failure's text).
template <typename Object>
TestResultCell StartWorker(const char* failure, const std::string& subject,
                           const std::function<std::unique_ptr<Object>()>& make,
                           bool (*step)(const Object&, const std::string&)) {
    auto cell = std::make_shared<std::atomic<int>>(kTestPending);
    std::shared_ptr<const Object> object;
    try {
        object = make();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, failure, subject.c_str(), e.what());
        cell->store(1);
        return cell;
    }
    std::thread([cell, object = std::move(object), subject, failure, step] {
        int rc = 1;
        try {
            rc = step(*object, subject) ? 0 : 1;
        } catch (const std::exception& e) {
            Platform::Log(LOG_ERR, failure, subject.c_str(), e.what());
        } catch (...) {
        }
        cell->store(rc);
    }).detach();
    return cell;
}

}  // namespace

TestResultCell StartPing(const HostContext& host, const std::string& target) {
    return StartWorker<HostCtl::Network::Pinger>(
        "Pinging %s failed: %s", target, [&host] { return host.backend.GetPinger(); },
        [](const HostCtl::Network::Pinger& pinger, const std::string& address) {
            return pinger.Ping(address);
        });
}

TestResultCell StartResolve(const HostContext& host, const std::string& hostname) {
    return StartWorker<HostCtl::Network::Resolver>(
        "Resolving %s failed: %s", hostname,
        [&host] { return host.backend.GetResolver("defaultNetStack"); },
        [](const HostCtl::Network::Resolver& resolver, const std::string& name) {
            return resolver.Resolve(name);
        });
}

}  // namespace Tesk
