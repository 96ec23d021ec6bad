// SHA-256 and base64 through libcrypto, opened at first use: the support
// information's key fingerprints and certificate thumbprint.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace LinuxHost {

// The 32-byte digest; none when libcrypto cannot be loaded (logged).
std::optional<std::string> Sha256(std::string_view data);

// Standard base64 with its padding; none without libcrypto.
std::optional<std::string> Base64Encode(std::string_view data);
// The bytes of base64 text (white space between its characters allowed);
// none when it is not base64 or libcrypto is missing.
std::optional<std::string> Base64Decode(std::string_view text);

}  // namespace LinuxHost
