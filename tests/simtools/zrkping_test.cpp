// The simulated ping answers from the outside network and says why not.
#include "tests/simtools/tool_runner.h"

namespace TeskTest {
namespace {

using Json = Sim::Json;

class PingTest : public HostRootTest {};

TEST_F(PingTest, FollowsTheManagementPortGroupsVlan) {
    auto ok = RunTool("/bin/zrkping", {"-c", "2", "192.168.10.1"});
    EXPECT_EQ(ok.status, 0);
    EXPECT_NE(ok.out.find("2 packets transmitted, 2 packets received, 0% packet loss"),
              std::string::npos)
        << ok.out;

    Sim::Update(
        [](Json& s) { s["network"]["standardSwitches"][0]["portGroups"][0]["vlanId"] = 99; });
    auto lost = RunTool("/bin/zrkping", {"-c", "3", "192.168.10.1"});
    EXPECT_EQ(lost.status, 1);
    EXPECT_NE(lost.out.find("no network carries VLAN 99"), std::string::npos) << lost.out;
    EXPECT_NE(lost.out.find("100% packet loss"), std::string::npos) << lost.out;

    // A state the model cannot read is no answer either.
    Sim::Update([](Json& s) { s["network"]["outside"]["segments"] = "cable"; });
    EXPECT_EQ(RunTool("/bin/zrkping", {"-c", "3", "192.168.10.1"}).status, 2);
}

}  // namespace
}  // namespace TeskTest
