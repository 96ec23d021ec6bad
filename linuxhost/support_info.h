// "View Support Information" on a Linux host: the machine id
// (/etc/machine-id), the firmware's serial number where DMI gives it, the SSH
// host keys' fingerprints (/etc/ssh/ssh_host_*_key.pub, SHA256 as ssh-keygen
// -l prints it) and the SHA-256 thumbprint of the TLS certificate named by
// the option "support.tls-certificate", where that file exists.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hostctl/support_info.h"

namespace LinuxHost {

class SupportInformationImpl : public HostCtl::Support::SupportInformation {
public:
    std::string GetSupportText() const override;
};

// "SHA256:<base64 without padding>" of an OpenSSH public key line
// ("ssh-ed25519 AAAA... comment"), with its type ("ED25519"); none when the
// line is not one.
struct KeyFingerprint {
    std::string type;
    std::string fingerprint;
};
std::optional<KeyFingerprint> SshKeyFingerprint(std::string_view publicKeyLine);

// The SHA-256 thumbprint ("AB:CD:...") of the first certificate of a PEM
// file; none when it holds none.
std::optional<std::string> CertificateThumbprint(std::string_view pem);

}  // namespace LinuxHost
