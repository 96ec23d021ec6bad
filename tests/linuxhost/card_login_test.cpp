// The login id read from a smart card: the APDUs sent to a fake card and the
// id made of its answers, including the card's "ask again" answers and the
// cards that hold no id.
#include <deque>
#include <utility>

#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "linuxhost/card_login.h"

namespace {

using LinuxHost::Apdu;

// A card that expects exactly the given commands, in order, and gives each
// its answer.
class ScriptedCard : public LinuxHost::CardTransport {
public:
    explicit ScriptedCard(std::deque<std::pair<Apdu, Apdu>> script) : script_(std::move(script)) {}
    Apdu Transmit(const Apdu& command) override {
        if (script_.empty()) throw HostCtl::Lib::HostCtlException("the card was asked too much");
        auto [expected, answer] = script_.front();
        script_.pop_front();
        EXPECT_EQ(command, expected);
        return answer;
    }
    bool AllAsked() const { return script_.empty(); }

private:
    std::deque<std::pair<Apdu, Apdu>> script_;
};

Apdu Ok(const std::string& data) {
    Apdu a(data.begin(), data.end());
    a.insert(a.end(), {0x90, 0x00});
    return a;
}

TEST(CardLogin, ReadsTheLoginDataOfTheOpenPgpApplication) {
    const Apdu select = LinuxHost::SelectOpenPgpApplication();
    const Apdu get = LinuxHost::GetLoginData();
    const Apdu more = {0x00, 0xC0, 0x00, 0x00, 0x03};
    const struct {
        const char* what;
        std::deque<std::pair<Apdu, Apdu>> script;
        std::vector<std::string> ids;
    } cases[] = {
        {"a plain id", {{select, Ok("")}, {get, Ok("alice")}}, {"alice"}},
        {"options after a line feed", {{select, Ok("")}, {get, Ok("bob\n\x14\x01")}}, {"bob"}},
        {"empty login data", {{select, Ok("")}, {get, Ok("")}}, {}},
        {"no OpenPGP application", {{select, {0x6A, 0x82}}}, {}},
        {"no login data object", {{select, Ok("")}, {get, {0x69, 0x82}}}, {}},
        {"control characters are no name", {{select, Ok("")}, {get, Ok("ev\x01e")}}, {}},
        {"the rest by GET RESPONSE",
         {{select, {0x61, 0x02}},
          {{0x00, 0xC0, 0x00, 0x00, 0x02}, Ok("\x6F\x00")},
          {get, {'c', 'a', 'r', 0x61, 0x03}},
          {more, Ok("ol!")}},
         {"carol!"}},
        {"sent again with the length the card names",
         {{select, Ok("")}, {get, {0x6C, 0x04}}, {LinuxHost::GetLoginData(4), Ok("dave")}},
         {"dave"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ScriptedCard card(c.script);
        EXPECT_EQ(LinuxHost::ReadCardLoginIds(card), c.ids);
        EXPECT_TRUE(card.AllAsked());
    }
}

TEST(CardLogin, ACardThatCannotBeReadThrows) {
    const Apdu select = LinuxHost::SelectOpenPgpApplication();
    std::deque<std::pair<Apdu, Apdu>> endless = {{select, Ok("")},
                                                 {LinuxHost::GetLoginData(), {0x61, 0x01}}};
    for (int i = 0; i < 16; ++i)
        endless.push_back({{0x00, 0xC0, 0x00, 0x00, 0x01}, {'x', 0x61, 0x01}});
    const struct {
        const char* what;
        std::deque<std::pair<Apdu, Apdu>> script;
    } cases[] = {
        {"a response without status", {{select, {0x90}}}},
        {"a response that never ends", endless},
        {"the card taken out", {{select, Ok("")}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ScriptedCard card(c.script);
        EXPECT_THROW(LinuxHost::ReadCardLoginIds(card), HostCtl::Lib::HostCtlException);
    }
}

}  // namespace
