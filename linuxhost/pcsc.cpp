#include "linuxhost/pcsc.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "hostctl/exception.h"
#include "linuxhost/fail.h"
#include "linuxhost/lazy_library.h"
#include "platform/hostroot.h"

namespace LinuxHost {
namespace {

// Before the library's first call: its socket is the host root's.
void PointLibraryAtHostRoot() {
    static std::once_flag once;
    std::call_once(once, [] {
        const std::string socket = Tesk::Platform::HostPath(kPcscdSocket);
        if (socket != kPcscdSocket) ::setenv("PCSCLITE_CSOCK_NAME", socket.c_str(), 1);
    });
}

}  // namespace

bool PcscdListens() {
    struct stat socket {};
    if (::stat(Tesk::Platform::HostPath(kPcscdSocket).c_str(), &socket) != 0 ||
        !S_ISSOCK(socket.st_mode))
        return false;
    // Here, on the thread that asks first, rather than in the cards' watch:
    // setenv is no call for a second thread.
    PointLibraryAtHostRoot();
    return true;
}

bool PcscLibraryAvailable() {
    return kLibpcsclite.Available();
}

std::string PcscError(LONG result) {
    const auto text = TESK_LAZY(kLibpcsclite, pcsc_stringify_error);
    char code[16];
    std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(result));
    return text != nullptr ? std::string(text(result)) + " (" + code + ")" : std::string(code);
}

PcscContext::PcscContext() {
    PointLibraryAtHostRoot();
    const auto establish = TESK_LAZY(kLibpcsclite, SCardEstablishContext);
    if (establish == nullptr) Fail("The smart-card library (libpcsclite) cannot be loaded");
    const LONG result = establish(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &context_);
    if (result != SCARD_S_SUCCESS)
        Fail("Reaching the smart-card reader service failed: " + PcscError(result));
}

PcscContext::~PcscContext() {
    if (const auto release = TESK_LAZY(kLibpcsclite, SCardReleaseContext)) release(context_);
}

std::vector<std::string> PcscContext::Readers() const {
    const auto list = TESK_LAZY(kLibpcsclite, SCardListReaders);
    if (list == nullptr) Fail("The smart-card library (libpcsclite) cannot be loaded");
    // Readers come and go between the two calls: ask again while the list
    // grew.
    for (int attempt = 0; attempt < 3; ++attempt) {
        DWORD size = 0;
        LONG result = list(context_, nullptr, nullptr, &size);
        if (result == SCARD_E_NO_READERS_AVAILABLE) return {};
        if (result != SCARD_S_SUCCESS)
            Fail("Listing the smart-card readers failed: " + PcscError(result));
        std::string names(size, '\0');
        result = list(context_, nullptr, names.data(), &size);
        if (result == SCARD_E_NO_READERS_AVAILABLE) return {};
        if (result == SCARD_E_INSUFFICIENT_BUFFER) continue;
        if (result != SCARD_S_SUCCESS)
            Fail("Listing the smart-card readers failed: " + PcscError(result));
        // A multi-string: names ended by NUL, the list by another NUL.
        std::vector<std::string> readers;
        for (std::size_t at = 0; at < size && names[at] != '\0';) {
            readers.emplace_back(names.c_str() + at);
            at += readers.back().size() + 1;
        }
        return readers;
    }
    Fail("Listing the smart-card readers failed: the readers kept changing");
}

PcscCard::PcscCard(const PcscContext& context, const std::string& reader) : reader_(reader) {
    const auto connect = TESK_LAZY(kLibpcsclite, SCardConnect);
    if (connect == nullptr) Fail("The smart-card library (libpcsclite) cannot be loaded");
    const LONG result = connect(context.Handle(), reader.c_str(), SCARD_SHARE_SHARED,
                                SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1, &card_, &protocol_);
    if (result == SCARD_E_NO_SMARTCARD || result == SCARD_W_REMOVED_CARD)
        throw HostCtl::Lib::HostCtlException("No smart card in " + reader);
    if (result != SCARD_S_SUCCESS)
        Fail("Reaching the smart card in " + reader + " failed: " + PcscError(result));
}

PcscCard::~PcscCard() {
    if (const auto disconnect = TESK_LAZY(kLibpcsclite, SCardDisconnect))
        disconnect(card_, SCARD_LEAVE_CARD);
}

Apdu PcscCard::Transmit(const Apdu& command) {
    const auto transmit = TESK_LAZY(kLibpcsclite, SCardTransmit);
    if (transmit == nullptr) Fail("The smart-card library (libpcsclite) cannot be loaded");
    // What the library's own SCARD_PCI_T0 and SCARD_PCI_T1 hold.
    const SCARD_IO_REQUEST send{protocol_, sizeof(SCARD_IO_REQUEST)};
    Apdu response(258);
    DWORD size = response.size();
    const LONG result =
        transmit(card_, &send, command.data(), command.size(), nullptr, response.data(), &size);
    if (result != SCARD_S_SUCCESS)
        Fail("Talking to the smart card in " + reader_ + " failed: " + PcscError(result));
    response.resize(size);
    return response;
}

}  // namespace LinuxHost
