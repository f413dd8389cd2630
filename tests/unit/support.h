// Shared by the tests.
#pragma once

#include "mem/galloc.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

// A test that frees every block of galloc.
struct COUNTED : testing::Test {
    int held = galloccount;

    void TearDown() override {
        EXPECT_EQ(galloccount, held);
    }
};

// A directory of its own for one test: entered when the test starts, removed when it ends.
struct TREE {
    std::filesystem::path before = std::filesystem::current_path();
    std::string root;

    TREE() {
        char name[] = "/tmp/tolvik_test_XXXXXX";
        root = std::filesystem::canonical(mkdtemp(name));
        std::filesystem::current_path(root);
    }
    TREE(const TREE &) = delete;
    TREE &operator=(const TREE &) = delete;
    ~TREE() {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(root);
    }

    static std::string here() {
        return std::filesystem::current_path();
    }
    static void makedir(const std::string &name) {
        std::filesystem::create_directories(name);
    }
    static void makefile(const std::string &name, const std::string &text = "") {
        const auto parent = std::filesystem::path(name).parent_path();
        if (!parent.empty())
            makedir(parent);
        std::ofstream(name) << text;
    }
};

// Standard output of the action.
template <typename ACTION> std::string printed(ACTION action) {
    testing::internal::CaptureStdout();
    action();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

inline std::string repeated(const std::string &text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}
