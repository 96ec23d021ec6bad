// The shared host queries, their column fitting and their log lines.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/info.h"
#include "host/queries.h"
#include "network/info_list.h"
#include "network/list_format.h"
#include "tests/hostctl/fixture.h"

namespace {

using TeskTest::Json;

class QueriesTest : public TeskTest::HostRootTest {};

TEST(PnicOrderTest, NumberedNamesByNumberOthersByBytes) {
    std::vector<std::string> names = {"pnic10", "pnic2", "eth0", "pnic1", "pnic"};
    std::sort(names.begin(), names.end(), Tesk::ComparePnicNames);
    EXPECT_EQ(names, (std::vector<std::string>{"eth0", "pnic", "pnic1", "pnic2", "pnic10"}));
    EXPECT_FALSE(Tesk::ComparePnicNames("pnic2", "pnic2"));
}

TEST(FormatTest, SwitchNameOf19IsCutAnd18IsWhole) {
    Tesk::SwitchSummary s;
    s.name = "abcdefghijklmnopqrs";
    EXPECT_TRUE(Tesk::FormatSwitchRow(s).starts_with("{align:padding:20}abcdefghijklmno...{/"));
    s.name.pop_back();
    EXPECT_TRUE(Tesk::FormatSwitchRow(s).starts_with("{align:padding:20}abcdefghijklmnopqr{/"));
}

TEST(FormatTest, PnicRowCutsNameLabelAndMac) {
    Tesk::PnicSummary p{"pnic0", "N/A", "02:5a:4b:a1:20:01", "Disconnected", ""};
    EXPECT_EQ(Tesk::FormatPnicRow(p),
              "{align:padding:13}pnic0{/align}{align:padding:30}N/A (02:5a:4b:a1:20:01){/align}"
              "Disconnected ");
    // A 12-character name and a 15-character label are cut; the MAC keeps
    // what fits in 25 characters together with the label.
    p = {"pnicx-abcdef", "Acme Networks X540", "02:5a:4b:a1:10:00", "Connected", "zSwitch0"};
    EXPECT_EQ(Tesk::FormatPnicRow(p),
              "{align:padding:13}pnicx-ab...{/align}{align:padding:30}Acme Networ... "
              "(...a1:10:00){/align}Connected (...)");
    // A 14-character label stays whole; label and MAC of 25 stay whole.
    p.hardwareLabel = "Acme Networks1";
    EXPECT_NE(Tesk::FormatPnicRow(p).find("Acme Networks1 (...a1:10:00)"), std::string::npos);
    p.hardwareLabel = "Acme1234";
    EXPECT_NE(Tesk::FormatPnicRow(p).find("Acme1234 (02:5a:4b:a1:10:00)"), std::string::npos);
    p.hardwareLabel = "Acme12345";
    EXPECT_NE(Tesk::FormatPnicRow(p).find("Acme12345 (...a:4b:a1:10:00)"), std::string::npos);
}

TEST_F(QueriesTest, PnicNamesAndSummaries) {
    root().editState([](Json& s) {
        Json& pnics = s["network"]["pnics"];
        pnics[0]["name"] = "pnic10";
        pnics[1]["name"] = "pnic2";
        pnics[2]["name"] = "pnic1";
        pnics[3]["name"] = "eth0";
    });
    std::vector<std::string> names;
    ASSERT_TRUE(Tesk::GetPnicNames(HostCtl::TheBackend(), names));
    EXPECT_EQ(names, (std::vector<std::string>{"eth0", "pnic1", "pnic2", "pnic10"}));

    auto free = Tesk::GetPnicSummary(HostCtl::TheBackend(), "eth0", {});
    ASSERT_TRUE(free);
    EXPECT_EQ(free->hardwareLabel, "N/A");
    EXPECT_EQ(free->connectionStatus, "Disconnected");
    EXPECT_TRUE(Tesk::FormatPnicDetails(*free).ends_with("\nUsed By: None"));

    auto used = Tesk::GetPnicSummary(HostCtl::TheBackend(), "pnic10", {{"pnic10", "zSwitch0"}});
    ASSERT_TRUE(used);
    EXPECT_EQ(used->hardwareLabel, "Acme Networks X540 10 Gigabit Network Connection");
    EXPECT_EQ(Tesk::FormatPnicDetails(*used),
              "Hardware Label: Acme Networks X540 10 Gigabit Network Connection\nMAC Address: "
              "02:5a:4b:a1:10:00\nConnection Status: Connected\nUsed By: zSwitch0");

    root().editState([](Json& s) { s["network"]["pnics"][1]["pci"]["device"] = "  "; });
    root().editState([](Json& s) { s["network"]["pnics"][1]["pci"]["vendor"] = ""; });
    EXPECT_EQ(Tesk::GetPnicSummary(HostCtl::TheBackend(), "pnic2", {})->hardwareLabel, "N/A");
    EXPECT_FALSE(Tesk::GetPnicSummary(HostCtl::TheBackend(), "pnic7", {}));
}

TEST_F(QueriesTest, StandardSwitchSummaries) {
    std::vector<Tesk::SwitchSummary> switches;
    ASSERT_TRUE(Tesk::GetStandardSwitches(HostCtl::TheBackend(), switches));
    ASSERT_EQ(switches.size(), 2u);
    EXPECT_EQ(switches[0].name, "zSwitch0");
    EXPECT_EQ(switches[0].uplinks, (std::vector<std::string>{"pnic0", "pnic1"}));
    EXPECT_EQ(switches[0].portGroups,
              (std::vector<std::string>{"Management Network", "VM Network"}));
    EXPECT_EQ(switches[0].usedPorts, 5) << "2 uplinks, the management NIC, 2 virtual machines";
    EXPECT_EQ(switches[1].configuredPorts, 64);

    root().setFault("vswitch.getUplinks", {{"exception", "busy"}});
    switches.clear();
    EXPECT_FALSE(Tesk::GetStandardSwitches(HostCtl::TheBackend(), switches));
    EXPECT_TRUE(root().hasLogLine("Gathering standard virtual switch list failed: busy"));
}

TEST_F(QueriesTest, NoNicHostAndManagementOnADistributedSwitch) {
    UseProfile("nonic");
    std::vector<std::string> names;
    EXPECT_TRUE(Tesk::GetPnicNames(HostCtl::TheBackend(), names));
    EXPECT_TRUE(names.empty());
    std::vector<Tesk::SwitchSummary> switches;
    EXPECT_TRUE(Tesk::GetStandardSwitches(HostCtl::TheBackend(), switches));
    EXPECT_TRUE(switches.empty());
    EXPECT_EQ(Tesk::GetManagementInterface(HostCtl::TheBackend()), nullptr);
    EXPECT_FALSE(Tesk::IsManagementOnQds(HostCtl::TheBackend()));
    EXPECT_TRUE(root().hasLogLine("Could not locate the management interface"));

    UseProfile("qds");
    EXPECT_TRUE(Tesk::IsManagementOnQds(HostCtl::TheBackend()));
    root().setFault("zrkNic.getPortConnection", {{"exception", "port gone"}});
    EXPECT_FALSE(Tesk::IsManagementOnQds(HostCtl::TheBackend()));
    EXPECT_TRUE(root().hasLogLine("Could not determine if a qDS was in use: port gone"));
}

}  // namespace
