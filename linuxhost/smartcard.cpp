#include "linuxhost/smartcard.h"

#include <sys/stat.h>

#include "platform/hostroot.h"

namespace LinuxHost {

std::string WhySmartCardLoginNotOffered() {
    struct stat socket {};
    if (::stat(Tesk::Platform::HostPath(kPcscdSocket).c_str(), &socket) != 0 ||
        !S_ISSOCK(socket.st_mode))
        return "No smart-card reader service (pcscd) runs on this host.";
    // The readers are there, but reading a card's user ids (its certificates
    // through PKCS#11) is not done on this host yet.
    return "Smart-card login is not available on this host.";
}

}  // namespace LinuxHost
