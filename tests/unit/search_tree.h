// A directory of its own for one test: entered when the test starts, removed when it ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

struct TREE {
    std::filesystem::path before = std::filesystem::current_path();
    std::string root;

    TREE() {
        char name[] = "/tmp/tolvik_search_XXXXXX";
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
            std::filesystem::create_directories(parent);
        std::ofstream(name) << text;
    }
};
