// Fixtures shared by the frame tests: a simulated host root and a curses
// screen on pipes.
#pragma once

#include <curses.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/harness/sim_root_test.h"
#include "ui/terminal.h"

namespace fs = std::filesystem;

// A simulated host root made by tesk-sim, used as the host root for the test.
using HostRootTest = TeskTest::SimRootTest;

// A curses screen on pipes, so the tests can type bytes and read key codes.
class CursesOnPipes : public ::testing::Test {
protected:
    void Start(const char* term) {
        ASSERT_EQ(::pipe(in_), 0);
        inFile_ = ::fdopen(in_[0], "r");
        outFile_ = std::fopen("/dev/null", "w");
        screen_ = newterm(term, outFile_, inFile_);
        ASSERT_NE(screen_, nullptr) << term;
        set_term(screen_);
        start_color();
        Tesk::SetCannotChangeColours(false);
        Tesk::SetupCurses();
    }
    void TearDown() override {
        if (screen_) {
            endwin();
            delscreen(screen_);
        }
        if (inFile_) std::fclose(inFile_);
        if (outFile_) std::fclose(outFile_);
        if (in_[1] >= 0) ::close(in_[1]);
        Tesk::SetCannotChangeColours(false);
    }
    int KeyFor(const std::string& bytes) {
        EXPECT_EQ(::write(in_[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        return wgetch(stdscr);
    }
    int in_[2] = {-1, -1};
    FILE* inFile_ = nullptr;
    FILE* outFile_ = nullptr;
    SCREEN* screen_ = nullptr;
};
