// pcsc-lite's reader service (pcscd) as the Linux backend uses it: a
// connection to the service, its readers, and the card in one reader as a
// CardTransport. libpcsclite is opened at the first use (lazy_library.h). It
// reaches pcscd through the socket kPcscdSocket under the host root: on
// another root than "/" the library is pointed there (PCSCLITE_CSOCK_NAME)
// before its first call, so a fixture root never reaches the machine's pcscd.
#pragma once

#include <PCSC/winscard.h>

#include <string>
#include <vector>

#include "linuxhost/card_login.h"

namespace LinuxHost {

inline constexpr const char kPcscdSocket[] = "/run/pcscd/pcscd.comm";

// Whether a socket is at kPcscdSocket under the host root (loads nothing);
// where it is, the library is pointed at it. Asked before any other call.
bool PcscdListens();

// Whether libpcsclite can be loaded (loads it).
bool PcscLibraryAvailable();

// One connection to pcscd; throws HostCtl::Lib::HostCtlException (logged)
// when the library or the service is missing.
class PcscContext {
public:
    PcscContext();
    ~PcscContext();
    PcscContext(const PcscContext&) = delete;
    PcscContext& operator=(const PcscContext&) = delete;

    SCARDCONTEXT Handle() const { return context_; }
    // The readers' names in pcscd's order; empty when none is connected.
    std::vector<std::string> Readers() const;

private:
    SCARDCONTEXT context_ = 0;
};

// The card in one reader, shared with other programs; throws
// HostCtl::Lib::HostCtlException when the reader holds no card.
class PcscCard : public CardTransport {
public:
    PcscCard(const PcscContext& context, const std::string& reader);
    ~PcscCard() override;
    PcscCard(const PcscCard&) = delete;
    PcscCard& operator=(const PcscCard&) = delete;

    Apdu Transmit(const Apdu& command) override;

private:
    std::string reader_;
    SCARDHANDLE card_ = 0;
    DWORD protocol_ = 0;
};

// The service's text for a pcsc-lite result code.
std::string PcscError(LONG result);

}  // namespace LinuxHost
