// The management-tool wrappers: the retry as the service account and what a
// query's answer is.
#include <string>

#include "host/runner.h"
#include "tests/host/host_root.h"

namespace TeskTest {
namespace {

using RuxCmdTest = HostRootTest;

TEST_F(RuxCmdTest, RetriesAsServiceAccountOnlyOn255) {
    // Refuses every user but the service account.
    WriteRecorder("/bin/rux-cmd", "$([ \"$2\" = tesk ] && echo 0 || echo 255)");
    const char* argv[] = {"rux-cmd", "-U", "root", "hostsvc/start_ssh", nullptr};
    EXPECT_EQ(Tesk::RuxCmdRun("/bin/rux-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0),
              0);
    EXPECT_EQ(Calls(), "-U root hostsvc/start_ssh\n-U tesk hostsvc/start_ssh\n");
    EXPECT_TRUE(
        Logged("Unable to execute command rux-cmd hostsvc/start_ssh using user root. Using "
               "user tesk"));
    EXPECT_STREQ(argv[2], "root");

    // Any other failure is the answer.
    std::filesystem::remove(Path("/tmp/calls"));
    WriteRecorder("/bin/rux-cmd", "254");
    EXPECT_EQ(Tesk::RuxCmdRun("/bin/rux-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0),
              254);
    EXPECT_EQ(Calls(), "-U root hostsvc/start_ssh\n");
}

TEST_F(RuxCmdTest, GetIsTrueOnlyForOutputBeginningWithTrue) {
    struct Case {
        const char* output;
        int status;
        bool expected;
    };
    const Case cases[] = {
        {"truely more text", 0, true}, {" true", 0, false}, {"TRUE", 0, false}, {"tru", 0, false},
        {"true\n", 1, true},
    };
    for (const auto& c : cases) {
        WriteScript("/bin/rux-cmd", std::string("printf '%s' '") + c.output + "'; exit " +
                                        std::to_string(c.status));
        EXPECT_EQ(Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_enabled"), c.expected)
            << "output \"" << c.output << "\"";
    }
    EXPECT_TRUE(Logged("rux-cmd invocation: get ruxsvc/auth/lockdown_is_enabled"));

    // Asked as the service account.
    WriteRecorder("/bin/rux-cmd", "0");
    Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_possible");
    EXPECT_EQ(Calls(), "-U tesk ruxsvc/auth/lockdown_is_possible\n");
}

}  // namespace
}  // namespace TeskTest
