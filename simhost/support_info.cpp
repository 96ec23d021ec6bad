// The support file "/etc/brelt/support" of the host root, read without
// waiting: anything but a regular file (a FIFO would hold the console until
// some writer came) is refused and logged; a missing file is simply empty.
#include "simhost/support_info.h"

#include <cerrno>
#include <cstring>

#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"

namespace ZrkCtl::Support {

std::string SupportInformationImpl::GetSupportText() const {
    static constexpr const char kSupportFile[] = "/etc/brelt/support";
    std::string failure;
    auto text = Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(kSupportFile), &failure);
    if (text) return std::move(*text);
    if (failure != std::strerror(ENOENT))
        Tesk::Platform::Log(LOG_ERR, "Reading support information %s failed: %s", kSupportFile,
                            failure.c_str());
    return {};
}

}  // namespace ZrkCtl::Support
