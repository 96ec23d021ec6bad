// The host's logs as "View System Logs" lists them: each has a title and an
// id, and is shown in the pager from a plain file the host prepares. The
// interface only; a host backend (hostctl/backend.h) hands out the object.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace HostCtl::Logs {

struct LogSource {
    std::string title;  // host text
    std::string id;     // what PrepareLog takes
};

// A log made ready for the pager: a host path of a plain file that holds its
// text while the object lives (a copy made for the pager is removed with it).
class PreparedLog {
public:
    virtual ~PreparedLog() = default;
    virtual const std::string& HostPath() const = 0;
};

class SystemLogs {
public:
    virtual ~SystemLogs() = default;
    // The logs the host has now, in the host's order.
    virtual std::vector<LogSource> GetLogs() const = 0;
    // The log's text in a plain file; throws HostCtl::Lib::HostCtlException
    // when it cannot be read or written out.
    virtual std::unique_ptr<PreparedLog> PrepareLog(const std::string& id) const = 0;
};

// A log that already is a plain file of the host: nothing is copied.
class LogFileInPlace : public PreparedLog {
public:
    explicit LogFileInPlace(std::string hostPath) : hostPath_(std::move(hostPath)) {}
    const std::string& HostPath() const override { return hostPath_; }

private:
    std::string hostPath_;
};

}  // namespace HostCtl::Logs
