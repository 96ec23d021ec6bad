// Applying the management network in this process: a simulated host root,
// the pending configuration read from it the way the management network
// window reads it, and a key reader that answers the procedure's dialogs and
// notes what each one showed.
#pragma once

#include <curses.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "hostctl/backend.h"
#include "hostctl/network_types.h"
#include "network/apply_changes.h"
#include "network/network_window.h"
#include "tests/hostctl/fixture.h"
#include "tests/ui/screen.h"
#include "ui/keys.h"

namespace TeskTest {

namespace HN = HostCtl::Network;

class ApplyTest : public HostRootTest {
protected:
    void SetUp() override {
        HostRootTest::SetUp();
        OpenCursesScreen();
        Tesk::SetCurrentWindow(nullptr);
        Tesk::SetKeySession(&keySession_);
        Tesk::ResetHooks();
        erase();
        refresh();
    }
    void TearDown() override {
        Tesk::ResetHooks();
        Tesk::SetKeySession(nullptr);
        HostRootTest::TearDown();
    }

    // The pending configuration as the window reads it from the host.
    Tesk::PendingNetworkConfig Seed() {
        auto p = Tesk::LoadPendingNetworkConfig(nullptr, {HostCtl::TheBackend(), "root"});
        EXPECT_TRUE(p) << root().logTail();
        return p ? std::move(*p) : Tesk::PendingNetworkConfig{};
    }

    // Adapters, VLAN, static address, both gateways, names: every group.
    Tesk::PendingNetworkConfig FullChange() {
        auto p = Seed();
        p.adapters = {"pnic2", "pnic0"};
        p.vlanId = 30;
        p.address.SetIpv4Address(HN::Ipv4Address("192.168.10.50"));
        p.address.SetIpv4Gateway(HN::Ipv4Address("192.168.10.254"));
        p.address.SetIpv6Gateway(HN::Ipv6Address("2001:db8:10::fe"));
        p.ipv6GatewayChanged = true;
        p.hostname = "tesk-host05";
        p.primaryDns = std::make_unique<HN::Ipv4Address>("192.168.10.9");
        p.alternateDns.reset();
        p.suffixText = "a.example b.example";
        return p;
    }

    // Runs the procedure; each dialog it waits on gets the next key (<Enter>
    // unless told), and the screen it waited on is kept in screens_. Running
    // out of keys fails the test.
    void Apply(Tesk::PendingNetworkConfig& p, std::deque<int> keys = {}) {
        logBefore_ = root().logLines().size();
        screens_.clear();
        summaryRebuilt_ = 0;
        FakeInput clock({});
        Tesk::Hooks().wait = [&](const timeval*) -> int {
            screens_.push_back(ScreenText());
            if (onWait) onWait();
            if (keys.empty()) throw std::runtime_error("a dialog too many: " + screens_.back());
            int key = keys.front();
            keys.pop_front();
            return key;
        };
        const Tesk::HostContext host{HostCtl::TheBackend(), "root"};
        Tesk::ApplyNetworkChanges(nullptr, host, p, [this] { ++summaryRebuilt_; });
        EXPECT_TRUE(keys.empty()) << keys.size() << " dialog(s) fewer than expected";
    }

    // The position of the first syslog line the last Apply wrote that
    // contains text; -1 when none does.
    int LineOf(const std::string& text) {
        const auto lines = root().logLines();
        for (size_t i = logBefore_; i < lines.size(); ++i)
            if (lines[i].find(text) != std::string::npos) return static_cast<int>(i);
        return -1;
    }
    bool Logged(const std::string& text) { return LineOf(text) >= 0; }

    Json Net() { return root().state()["network"]; }
    // zrk0 and the "Management Network" port group, first in every profile.
    Json Nic() { return Net()["zrkNics"][0]; }
    Json ManagementGroup() { return Net()["standardSwitches"][0]["portGroups"][0]; }

    static std::string ScreenText() {
        std::string text;
        for (int row = 0; row < getmaxy(curscr); ++row) text += RowText(curscr, row) + "\n";
        return text;
    }

    std::vector<std::string> screens_;
    std::function<void()> onWait;
    int summaryRebuilt_ = 0;

private:
    TestKeySession keySession_;
    size_t logBefore_ = 0;
};

}  // namespace TeskTest
