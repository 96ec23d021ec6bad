// What the host tells its administrator for support requests (its identity,
// certificate thumbprints, key fingerprints), as one text. The interface
// only; a host backend (hostctl/backend.h) hands out the object.
#pragma once

#include <string>

namespace HostCtl::Support {

class SupportInformation {
public:
    virtual ~SupportInformation() = default;

    // The text as the host keeps it (host text, not markup); empty when the
    // host has none. A text that exists but cannot be read is logged and
    // answered as empty; nothing is thrown.
    virtual std::string GetSupportText() const = 0;
};

}  // namespace HostCtl::Support
