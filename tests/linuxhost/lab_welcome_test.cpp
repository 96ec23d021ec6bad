// The console on the lab's Linux host (run through scripts/lab.sh): the
// welcome screen shows the lab host's product line, hardware and memory,
// without loading the libraries the backend opens at first use.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/harness/console_session.h"

namespace {

using TeskTest::ConsoleSession;
using TeskTest::SessionOptions;

// What the lab gives the console: its root, backend, bus and logins.
SessionOptions LabSession() {
    SessionOptions options;
    for (const char* name :
         {"TESK_ROOT", "TESK_BACKEND", "DBUS_SYSTEM_BUS_ADDRESS", "TESK_LIBVIRT_URI", "LD_PRELOAD",
          "PAM_WRAPPER", "PAM_WRAPPER_SERVICE_DIR", "PAM_WRAPPER_DISABLE_DEEPBIND",
          "UID_WRAPPER_DISABLE_DEEPBIND"})
        if (const char* value = std::getenv(name)) options.env.emplace_back(name, value);
    return options;
}

void WriteInRoot(const std::string& hostPath, const std::string& text) {
    const std::string path = std::string(std::getenv("TESK_ROOT")) + hostPath;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

TEST(LabWelcome, ShowsTheHostsProductLineHardwareAndMemory) {
    const char* backend = std::getenv("TESK_BACKEND");
    if (std::getenv("TESK_ROOT") == nullptr || backend == nullptr ||
        std::string(backend) != "linux")
        GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    // The processors and memory of the lab root stand in for the kernel's.
    WriteInRoot("/proc/cpuinfo",
                "processor\t: 0\nphysical id\t: 0\nmodel name\t: Lab CPU 3000\n\n"
                "processor\t: 1\nphysical id\t: 1\nmodel name\t: Lab CPU 3000\n");
    WriteInRoot("/proc/meminfo", "MemTotal:       16777216 kB\n");
    WriteInRoot("/proc/sys/kernel/osrelease", "6.1.0-lab\n");
    WriteInRoot("/proc/sys/kernel/version", "#7 SMP PREEMPT_DYNAMIC\n");

    ConsoleSession console(LabSession());
    console.waitForText("Debian GNU/Linux 12 (Zerkel 6.1.0-lab Build 7)");
    console.waitForText("Lab Systems LS-2000 Rack Server");
    console.waitForText("2 x Lab CPU 3000");
    console.waitForText("16 GiB Memory");
    // The welcome screen's facts load none of the libraries opened at first use.
    std::ifstream maps("/proc/" + std::to_string(console.pid()) + "/maps");
    const std::string loaded(std::istreambuf_iterator<char>(maps), {});
    for (const char* library : {"/libsystemd.so", "/libvirt.so", "/libcrypto.so"})
        EXPECT_EQ(loaded.find(library), std::string::npos) << library << " loaded at start";
}

}  // namespace
