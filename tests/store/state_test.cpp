// The state store: a reader never sees half a document, writes replace the
// state whole, anything but a regular file is refused, and reads parse only
// what changed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include <fstream>
#include <string>

#include "platform/hostroot.h"
#include "store/state.h"
#include "tests/harness/sim_root.h"

namespace {

using Json = Sim::Json;

class StateStore : public ::testing::Test {
protected:
    void SetUp() override {
        root_ = std::make_unique<TeskTest::SimRoot>();
        Tesk::Platform::SetHostRootForTesting(root_->path());
    }
    void TearDown() override { Tesk::Platform::SetHostRootForTesting(""); }

    std::unique_ptr<TeskTest::SimRoot> root_;
};

TEST_F(StateStore, AReaderNeverSeesHalfADocumentWhileAnotherProcessWrites) {
    // Every version the writer makes holds "count" entries in "items", so a
    // whole document always has the two agree; the sizes change with it.
    Sim::Save(Json{{"count", 0}, {"items", Json::array()}});
    pid_t writer = ::fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        for (int i = 1; i <= 300; ++i)
            Sim::Update([i](Json& s) {
                const int count = i % 40;
                s["count"] = count;
                s["items"] = Json::array();
                for (int k = 0; k < count; ++k) s["items"].push_back(std::string(200, 'x'));
            });
        ::_exit(0);
    }
    int reads = 0, status = 0;
    pid_t done = 0;
    while ((done = ::waitpid(writer, &status, WNOHANG)) == 0) {
        auto state = Sim::Snapshot();
        const int count = state->at("count").get<int>();
        ASSERT_EQ(state->at("items").size(), static_cast<size_t>(count)) << "after " << reads;
        ++reads;
    }
    ASSERT_EQ(done, writer);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_GT(reads, 0);
    EXPECT_EQ(Sim::Get("/count"), Json(300 % 40));
}

std::string Contents(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Runs body in a child process; its exit status, or -1 when it was still
// running after `seconds` (then it is killed).
int InChildWithin(int seconds, const std::function<int()>& body) {
    pid_t child = ::fork();
    if (child == 0) ::_exit(body());
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    int status = 0;
    while (::waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A change tried in a child process (which may hang or crash): 0 when it was
// refused with a message holding `refusal`, 1 when it went through, 2 on
// another message, -1 when the child crashed or hung.
int ChangeRefusedWith(const std::string& refusal) {
    return InChildWithin(20, [&refusal] {
        try {
            Sim::Update([](Json& s) { s["profile"] = "written"; });
            return 1;
        } catch (const std::runtime_error& e) {
            return std::string(e.what()).find(refusal) != std::string::npos ? 0 : 2;
        }
    });
}

TEST_F(StateStore, AnythingButARegularFileIsRefusedWithoutWaitingOrFollowing) {
    // A FIFO in place of the state file or of its lock file would hold an
    // open until some writer came along; a link would lead reads and writes
    // out of the root; a folder cannot be locked.
    namespace fs = std::filesystem;
    const std::string state = Sim::StatePath();
    const std::string outside = root_->path("") + "-outside";
    fs::copy_file(state, outside);
    const std::string original = root_->readFile("/var/lib/simhost/state.json");
    const struct {
        const char* what;
        std::string path;
        std::function<void(const std::string&)> make;
    } cases[] = {
        {"state FIFO", state, [](const std::string& p) { ::mkfifo(p.c_str(), 0644); }},
        {"lock FIFO", state + ".lock", [](const std::string& p) { ::mkfifo(p.c_str(), 0644); }},
        {"lock folder", state + ".lock", [](const std::string& p) { fs::create_directory(p); }},
        {"state link", state, [&](const std::string& p) { fs::create_symlink(outside, p); }},
        {"lock link", state + ".lock",
         [&](const std::string& p) { fs::create_symlink(outside, p); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove_all(c.path);
        c.make(c.path);
        EXPECT_EQ(ChangeRefusedWith("is not a regular file"), 0);
        fs::remove_all(c.path);
        if (c.path == state) root_->writeFile("/var/lib/simhost/state.json", original);
    }
    EXPECT_EQ(Sim::Get("/profile"), Json("default"));
    EXPECT_EQ(Contents(outside), original) << "written through a link";
    fs::remove(outside);
}

TEST_F(StateStore, WritesGoToAPrivateFileOfTheirOwnAndReplaceTheStateWhole) {
    // A link where a predictable temporary name would be is never written
    // through; the state is replaced, readable by all, and nothing is left.
    namespace fs = std::filesystem;
    const std::string state = Sim::StatePath();
    const std::string outside = root_->path("") + "-outside";
    std::ofstream(outside) << "untouched";
    fs::create_symlink(outside, state + ".tmp." + std::to_string(::getpid()));
    Sim::Update([](Json& s) { s["profile"] = "written"; });
    EXPECT_EQ(Contents(outside), "untouched");
    fs::remove(state + ".tmp." + std::to_string(::getpid()));
    fs::remove(outside);

    EXPECT_EQ(Sim::Get("/profile"), Json("written"));
    EXPECT_EQ(fs::symlink_status(state).type(), fs::file_type::regular);
    EXPECT_EQ(fs::status(state).permissions(), static_cast<fs::perms>(0644));
    for (const auto& entry : fs::directory_iterator(fs::path(state).parent_path()))
        EXPECT_EQ(entry.path().filename().string().find(".tmp."), std::string::npos)
            << entry.path();

    // A write cut short (here by a file-size limit) fails and leaves the
    // state as it was.
    const std::string before = root_->readFile("/var/lib/simhost/state.json");
    EXPECT_EQ(InChildWithin(20,
                            [] {
                                ::signal(SIGXFSZ, SIG_IGN);
                                const rlimit limit{512, 512};
                                ::setrlimit(RLIMIT_FSIZE, &limit);
                                try {
                                    Sim::Update([](Json& s) { s["big"] = std::string(4096, 'x'); });
                                    return 1;
                                } catch (const std::runtime_error&) {
                                    return 0;
                                }
                            }),
              0);
    EXPECT_EQ(root_->readFile("/var/lib/simhost/state.json"), before);
}

TEST_F(StateStore, ReadsOfAnUnchangedStateParseNothing) {
    Sim::Update([](Json& s) { s["profile"] = "written"; });
    const unsigned long parses = Sim::ParseCountForTesting();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Sim::Get("/profile"), Json("written"));
    EXPECT_EQ(Sim::ParseCountForTesting(), parses);
    // A change by another writer is read (and parsed) once.
    root_->editState([](TeskTest::Json& s) { s["profile"] = "edited"; });
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Sim::Get("/profile"), Json("edited"));
    EXPECT_EQ(Sim::ParseCountForTesting(), parses + 1);
}

TEST_F(StateStore, NestingPastTheLimitIsUnreadableNotACrash) {
    // Deep nesting would make every copy, comparison and dump of the
    // document recurse that deep.
    const auto nested = [](int depth) {
        return R"({"profile": "nested", "deep": )" + std::string(depth, '[') +
               std::string(depth, ']') + "}";
    };
    root_->writeFile("/var/lib/simhost/state.json", nested(Sim::kMaxNesting - 1));
    EXPECT_EQ(Sim::Get("/profile"), Json("nested"));
    for (int depth : {Sim::kMaxNesting, 10000, 1000000}) {
        root_->writeFile("/var/lib/simhost/state.json", nested(depth));
        EXPECT_EQ(ChangeRefusedWith("simulated host state cannot be read"), 0) << depth;
    }
}

}  // namespace
