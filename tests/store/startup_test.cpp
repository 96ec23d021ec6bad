// From process start to the first welcome frame the console parses the
// host's state once, however many host queries the frame needs.
#include <gtest/gtest.h>

#include <string>

#include "tests/harness/console_session.h"

namespace {

using namespace TeskTest;

TEST(StartupParses, TheFirstWelcomeFrameParsesTheStateOnce) {
    for (const char* profile : {"default", "qds", "nonic"}) {
        SimRoot root(profile);
        SessionOptions options;
        options.program = STARTUP_PROBE;
        ConsoleSession console(root, options);
        ASSERT_EQ(console.waitExit(), ExitStatus::Exited(0)) << profile;
        auto count = root.tryReadFile("/tmp/state-parses");
        ASSERT_TRUE(count) << profile << "\n" << console.dump();
        // The nonic host raises its missing-adapter alert, a write of this
        // process: that keeps the written document and parses nothing.
        EXPECT_EQ(std::stoi(*count), 1) << profile;
    }
}

}  // namespace
