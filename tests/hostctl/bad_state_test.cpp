// Host state of the wrong kind: each wrong value fails the query that reads
// it with the host-control exception, naming the value, while every other
// query still answers.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "tests/hostctl/fixture.h"

namespace {

using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

class BadStateTest : public TeskTest::HostRootTest {
protected:
    HostCtl::Backend& host() { return HostCtl::TheBackend(); }

    // The query fails with the host-control exception, its text holding
    // `named`.
    void ExpectFails(const std::function<void()>& query, const std::string& named) {
        try {
            query();
            ADD_FAILURE() << "no failure; expected one naming " << named;
        } catch (const HostCtlException& e) {
            EXPECT_NE(std::string(e.what()).find(named), std::string::npos) << e.what();
        } catch (const std::exception& e) {
            ADD_FAILURE() << "not a host failure: " << e.what();
        }
    }
};

TEST_F(BadStateTest, WrongKindsListsAndNumbersFailTheirOwnQueryOnly) {
    root().editState([](Json& s) {
        s["network"]["dns"]["hostname"] = 42;
        s["hardware"]["memory"]["pageSize"] = -4096;
        s["hardware"]["memory"]["totalPages"] = 1.5;
        s["systemInfo"]["keyboard"]["layouts"] = {"US Default", 7};
        s["network"]["pnics"].push_back("pnic9");
        s["network"]["standardSwitches"][0]["numPorts"] = "many";
        // A fault whose text is no text still fails its operation, as a fault.
        s["faults"]["dns.getDomain"] = {{"exception", 42}};
    });
    auto dns = host().GetDnsConfig("defaultNetStack");
    ExpectFails([&] { dns->GetHostname(); }, "'hostname' is number, expected string");
    ExpectFails([&] { dns->GetDomain(); }, "'exception'");
    ExpectFails([&] { host().GetMemoryInfo()->GetPageSize(); },
                "'pageSize' is -4096, out of range");
    ExpectFails([&] { host().GetMemoryInfo()->GetTotalPages(); }, "expected integer");
    auto info = host().GetSystemInfo();
    ExpectFails([&] { info->GetKeyboardLayouts(); }, "'layouts' is number");
    EXPECT_NE(info->GetKeyboardLayout(), "");
    ExpectFails([&] { host().GetNetworkInfo()->GetPnics(); },
                "'pnics' is string, expected object in the list");
    auto switches =
        host().GetVirtualSwitchInfo()->GetVirtualSwitches(HostCtl::Network::PortsetKind::All);
    ExpectFails([&] { switches[0]->GetNumPorts(); }, "'numPorts' is string");
    EXPECT_EQ(switches[1]->GetNumPorts(), 128);
    EXPECT_EQ(host().GetHardwareInfo()->GetVendorName(), "Acme Systems Inc.");
}

}  // namespace
