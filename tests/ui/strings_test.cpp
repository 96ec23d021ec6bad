// The string table, including the product line built from the host.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "host/product_line.h"
#include "platform/host_platform.h"
#include "platform/hostroot.h"
#include "simhost/platform_nodes.h"
#include "store/state.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace {

using Tesk::StringFactory;

TEST(Strings, FixedTexts) {
    StringFactory* table = StringFactory::GetFactory("en_US");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(StringFactory::GetFactory("de_DE"), table);
    EXPECT_STREQ(table->get(1), table->get(168));
    EXPECT_STREQ(table->get(1), "Shut Down/Restart");
    EXPECT_STREQ(table->get(3), "");
    EXPECT_STREQ(table->get(290), "");
    EXPECT_STREQ(table->get(0xFFFFFFFFu), "");
    EXPECT_STREQ(table->get(289),
                 "Please choose which Zerkel NIC should be migrated to which portgroup/switch.");
}

TEST(Strings, NamedIdsMatchTheirTexts) {
    namespace Id = Tesk::StrId;
    StringFactory* table = StringFactory::GetFactory("en_US");
    // Both ends of the table and the twin texts of menu entries and titles.
    EXPECT_STREQ(table->get(Id::CustomizeSystemViewLogs), "Customize System/View Logs");
    EXPECT_STREQ(table->get(Id::ChooseNicToMigrate),
                 "Please choose which Zerkel NIC should be migrated to which portgroup/switch.");
    EXPECT_EQ(Id::ConfigureManagementNetwork, 7u);
    EXPECT_EQ(Id::ConfigureManagementNetworkTitle, 44u);
    EXPECT_STREQ(table->get(Id::ConfigurePasswordTitle), table->get(Id::ConfigurePassword));
    EXPECT_STREQ(table->get(Id::LoginName), "Login Name:");
    EXPECT_STREQ(table->get(Id::Done), "Done.");
    EXPECT_STREQ(table->get(Id::Failed), "Failed.");
    EXPECT_STREQ(table->get(Id::TeskIdleTimeout), "TESK idle timeout");
}

TEST(Strings, ProductLineIsRetriedUntilTheHostAnswers) {
    namespace fs = std::filesystem;
    const fs::path root =
        fs::temp_directory_path() / ("tesk-ui-strings-" + std::to_string(::getpid()));
    fs::create_directories(root);
    Tesk::Platform::SetHostRootForTesting(root.string());
    Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());  // the nodes
    Sim::Save({{"system",
                {{"productName", "Zerkel Host"},
                 {"productVersion", "8.0.2"},
                 {"kernelVersion", "8.0.2"},
                 {"buildNumber", "24022510"}}},
               {"faults", {{"zsi.systemVersion", {{"exception", "node unreadable"}}}}}});

    StringFactory* table = StringFactory::GetFactory("en_US");
    Tesk::en_US_Factory::SetProductLineSource(&Tesk::ReadProductLine);
    EXPECT_STREQ(table->get(2), "");

    Sim::Update([](Sim::Json& state) { state["faults"] = Sim::Json::object(); });
    const char* line = table->get(2);
    EXPECT_STREQ(line, "Zerkel Host 8.0.2 (Zerkel 8.0.2 Build 24022510)");

    // Built once: later changes on the host do not show, the text stays put.
    Sim::Update([](Sim::Json& state) { state["system"]["productName"] = "Other"; });
    EXPECT_EQ(table->get(2), line);

    Tesk::Platform::SetHostRootForTesting("");
    Tesk::Platform::InstallHostPlatform(nullptr);
    fs::remove_all(root);
}

}  // namespace
