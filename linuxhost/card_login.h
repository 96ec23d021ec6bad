// The login id a smart card holds for itself, read with APDUs over whatever
// carries them (a pcsc-lite reader, or a fake card in a test). The card is
// taken as an OpenPGP card: its application is selected by its AID and its
// "login data" object (tag 5E) read with GET DATA. The object's text up to
// its first line feed is the login id (what follows a line feed is options
// for other programs); a card without the application, without the object,
// or with an empty one holds no login id.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace LinuxHost {

using Apdu = std::vector<std::uint8_t>;

// One card reached through a reader: a command APDU in, the card's response
// (data, then SW1 SW2) out. Throws HostCtl::Lib::HostCtlException when the
// card cannot be reached.
class CardTransport {
public:
    virtual ~CardTransport() = default;
    virtual Apdu Transmit(const Apdu& command) = 0;
};

// The commands sent, for tests and logs.
Apdu SelectOpenPgpApplication();
Apdu GetLoginData(std::uint8_t expected = 0);

// The login ids the card holds: none or one. Throws
// HostCtl::Lib::HostCtlException when the card cannot be reached.
std::vector<std::string> ReadCardLoginIds(CardTransport& card);

}  // namespace LinuxHost
