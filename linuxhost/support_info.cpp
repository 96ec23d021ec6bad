#include "linuxhost/support_info.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>
#include <vector>

#include "linuxhost/digest.h"
#include "linuxhost/host_files.h"
#include "linuxhost/options.h"
#include "platform/hostroot.h"

namespace LinuxHost {
namespace {

// "ssh-ed25519" gives "ED25519", "ecdsa-sha2-nistp256" "ECDSA", "ssh-rsa" "RSA".
std::string KeyTypeName(std::string type) {
    if (type.rfind("ssh-", 0) == 0) type.erase(0, 4);
    type = type.substr(0, type.find('-'));
    for (auto& c : type) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return type;
}

// The public key files of the host's SSH server, in name order.
std::vector<std::string> SshPublicKeyFiles() {
    std::vector<std::string> files;
    std::error_code error;
    for (const auto& entry :
         std::filesystem::directory_iterator(Tesk::Platform::HostPath("/etc/ssh"), error)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("ssh_host_", 0) == 0 && name.size() > 8 &&
            name.compare(name.size() - 8, 8, "_key.pub") == 0)
            files.push_back("/etc/ssh/" + name);
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

std::optional<KeyFingerprint> SshKeyFingerprint(std::string_view publicKeyLine) {
    std::istringstream fields{std::string(publicKeyLine)};
    std::string type, blob;
    if (!(fields >> type >> blob)) return std::nullopt;
    const auto key = Base64Decode(blob);
    if (!key || key->size() < 4) return std::nullopt;
    const auto digest = Sha256(*key);
    auto encoded = digest ? Base64Encode(*digest) : std::nullopt;
    if (!encoded) return std::nullopt;
    encoded->erase(encoded->find_last_not_of('=') + 1);
    return KeyFingerprint{KeyTypeName(type), "SHA256:" + *encoded};
}

std::optional<std::string> CertificateThumbprint(std::string_view pem) {
    static constexpr std::string_view kBegin = "-----BEGIN CERTIFICATE-----";
    static constexpr std::string_view kEnd = "-----END CERTIFICATE-----";
    const auto begin = pem.find(kBegin);
    const auto end = pem.find(kEnd, begin);
    if (begin == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
    const auto der = Base64Decode(pem.substr(begin + kBegin.size(), end - begin - kBegin.size()));
    const auto digest = der && !der->empty() ? Sha256(*der) : std::nullopt;
    if (!digest) return std::nullopt;
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char byte : *digest) {
        if (!out.empty()) out += ':';
        out += kHex[byte >> 4];
        out += kHex[byte & 15];
    }
    return out;
}

std::string SupportInformationImpl::GetSupportText() const {
    std::ostringstream out;
    const std::string machineId = ReadHostLine("/etc/machine-id");
    if (!machineId.empty()) out << "Machine ID: " << machineId << "\n";
    const std::string serial = ReadHostLine("/sys/class/dmi/id/product_serial");
    if (!serial.empty()) out << "Serial Number: " << serial << "\n";

    std::string keys;
    for (const auto& file : SshPublicKeyFiles()) {
        const auto fingerprint = SshKeyFingerprint(ReadHostLine(file));
        if (fingerprint) keys += "  " + fingerprint->type + " " + fingerprint->fingerprint + "\n";
    }
    if (!keys.empty()) out << "\nSSH host key fingerprints:\n" << keys;

    const std::string certificate = Options::Text("support.tls-certificate").value_or("");
    if (const auto pem = ReadHostFile(certificate)) {
        const auto thumbprint = CertificateThumbprint(*pem);
        if (thumbprint)
            out << "\nTLS certificate " << certificate << "\n  SHA-256 thumbprint: " << *thumbprint
                << "\n";
    }
    return out.str();
}

}  // namespace LinuxHost
