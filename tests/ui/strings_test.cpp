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

// Every id below the table's end has a text (a text lost from the middle of the
// table shifts the rest and leaves the last ids empty); ids past it give "".
TEST(Strings, EveryIdHasATextAndOthersAreEmpty) {
    StringFactory* table = StringFactory::GetFactory("en_US");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(StringFactory::GetFactory("de_DE"), table);
    for (std::uint32_t id = 0; id < Tesk::en_US_Factory::kCount; ++id) {
        if (id != Tesk::StrId::ProductLine && id != Tesk::StrId::Separator) {
            EXPECT_STRNE(table->get(id), "") << "id " << id;
        }
    }
    EXPECT_STREQ(table->get(Tesk::StrId::Separator), "");
    EXPECT_STREQ(table->get(Tesk::en_US_Factory::kCount), "");
    EXPECT_STREQ(table->get(0xFFFFFFFFu), "");
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
