#include "linuxhost/card_login.h"

#include <algorithm>

#include "linuxhost/fail.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

constexpr std::uint16_t kOk = 0x9000;
constexpr int kMaxResponseRounds = 16;

struct Response {
    Apdu data;
    std::uint16_t status = 0;
};

Response Split(Apdu raw) {
    if (raw.size() < 2) Fail("The smart card gave a response without a status");
    Response r;
    r.status = static_cast<std::uint16_t>(raw[raw.size() - 2] << 8 | raw.back());
    raw.resize(raw.size() - 2);
    r.data = std::move(raw);
    return r;
}

// Sends command and follows the card's two ways of saying "ask again":
// 6Cxx (send it again with Le xx) and 61xx (xx more bytes wait for GET
// RESPONSE).
Response Exchange(CardTransport& card, Apdu command) {
    Response r = Split(card.Transmit(command));
    if (r.status >> 8 == 0x6C) {
        command.back() = static_cast<std::uint8_t>(r.status & 0xFF);
        r = Split(card.Transmit(command));
    }
    Apdu data = std::move(r.data);
    for (int round = 0; r.status >> 8 == 0x61; ++round) {
        if (round == kMaxResponseRounds) Fail("The smart card's response does not end");
        r = Split(card.Transmit({0x00, 0xC0, 0x00, 0x00, static_cast<std::uint8_t>(r.status)}));
        data.insert(data.end(), r.data.begin(), r.data.end());
    }
    r.data = std::move(data);
    return r;
}

}  // namespace

Apdu SelectOpenPgpApplication() {
    return {0x00, 0xA4, 0x04, 0x00, 0x06, 0xD2, 0x76, 0x00, 0x01, 0x24, 0x01, 0x00};
}

Apdu GetLoginData(std::uint8_t expected) {
    return {0x00, 0xCA, 0x00, 0x5E, expected};
}

std::vector<std::string> ReadCardLoginIds(CardTransport& card) {
    const Response selected = Exchange(card, SelectOpenPgpApplication());
    if (selected.status != kOk) {
        Tesk::Platform::Log(LOG_INFO, "The smart card has no OpenPGP application (status %04X)",
                            selected.status);
        return {};
    }
    const Response login = Exchange(card, GetLoginData());
    if (login.status != kOk) {
        Tesk::Platform::Log(LOG_INFO, "The smart card holds no login data (status %04X)",
                            login.status);
        return {};
    }
    const auto end = std::find(login.data.begin(), login.data.end(), '\n');
    const std::string id(login.data.begin(), end);
    if (id.empty()) return {};
    if (std::any_of(id.begin(), id.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; })) {
        Tesk::Platform::Log(LOG_WARNING, "The smart card's login data is no user name");
        return {};
    }
    return {id};
}

}  // namespace LinuxHost
