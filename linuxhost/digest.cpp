#include "linuxhost/digest.h"

#include <openssl/evp.h>

#include "linuxhost/lazy_library.h"

namespace LinuxHost {

std::optional<std::string> Sha256(std::string_view data) {
    const auto digest = TESK_LAZY(kLibcrypto, EVP_Digest);
    const auto sha256 = TESK_LAZY(kLibcrypto, EVP_sha256);
    if (digest == nullptr || sha256 == nullptr) return std::nullopt;
    unsigned char out[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (digest(data.data(), data.size(), out, &size, sha256(), nullptr) != 1) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(out), size);
}

std::optional<std::string> Base64Encode(std::string_view data) {
    const auto encode = TESK_LAZY(kLibcrypto, EVP_EncodeBlock);
    if (encode == nullptr) return std::nullopt;
    std::string out(4 * ((data.size() + 2) / 3) + 1, '\0');
    const int n =
        encode(reinterpret_cast<unsigned char*>(out.data()),
               reinterpret_cast<const unsigned char*>(data.data()), static_cast<int>(data.size()));
    out.resize(n < 0 ? 0 : static_cast<std::size_t>(n));
    return out;
}

std::optional<std::string> Base64Decode(std::string_view text) {
    const auto decode = TESK_LAZY(kLibcrypto, EVP_DecodeBlock);
    if (decode == nullptr) return std::nullopt;
    std::string compact;
    for (char c : text)
        if (c != '\n' && c != '\r' && c != ' ' && c != '\t') compact += c;
    if (compact.size() % 4 != 0) return std::nullopt;
    std::string out(compact.size() / 4 * 3 + 1, '\0');
    const int n = decode(reinterpret_cast<unsigned char*>(out.data()),
                         reinterpret_cast<const unsigned char*>(compact.data()),
                         static_cast<int>(compact.size()));
    if (n < 0) return std::nullopt;
    // The block decoder counts the padding as zero bytes.
    std::size_t size = static_cast<std::size_t>(n);
    for (std::size_t i = compact.size(); i > 0 && compact[i - 1] == '='; --i) --size;
    out.resize(size);
    return out;
}

}  // namespace LinuxHost
