// Functions that fail cleanly when memory runs out at any of their blocks. Command lines do not get
// there: they need more blocks before (script/faults).
#include "expr/expr.h"
#include "support.h"
#include "symbols/loader.h"
#include "symbols/store.h"
#include "wild/mathrules.h"
#include "wild/wild.h"

#include <unistd.h>
#include <vector>

namespace {

bool load() {
    TVKINFO *info = tvkload("s.tvk");
    const bool whole = info != nullptr && symfind(info->symtable, "s1") != nullptr;
    if (info != nullptr)
        tvkfree(info);
    return whole;
}

bool match() {
    char output[256];
    return WILD_match(output, "1-2", "#-#", "##") != 0;
}

bool evaluate() {
    EXPR *e = EXPR_open();
    if (e != nullptr)
        EXPR_set(e, "x", 1);
    const bool right = e != nullptr && EXPR_get(e, "x+max(1)") == 2;
    EXPR_close(e);
    return right;
}

// Calls the function with `first` blocks left, then with one more until it succeeds. Exits with 0
// if it did with three or more, and if each call freed its blocks.
[[noreturn]] void starve(bool (*function)(), int first) {
    constexpr int limit = 40;
    setenv("GALLOCMAX", std::to_string(limit).c_str(), 1);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    WILD_addmathrule("#=#");
    for (int left = first; left < limit / 2; ++left) {
        std::vector<void *> held;
        while (galloccount < limit - left)
            held.push_back(galloc(1));
        const bool succeeded = function();
        if (galloccount != limit - left)
            _exit(99);
        for (void *block : held)
            gfree(block);
        if (succeeded)
            exit(left < 3 ? 97 : 0); // unlike _exit, writes the counts of a coverage build
    }
    _exit(98);
}

TEST(MemoryDeathTest, FunctionsFailAtEveryBlock) {
    const TREE tree;
    TREE::makefile("s.tvk", "[a.o]\nsource=a.c\ndefine=s1,FUNCTION,GLOBAL,4\nrefer=s2\nsize=4\n");
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(starve(load, 0), testing::ExitedWithCode(0), "out of memory reading 's.tvk'");
    // A rule of the match needs the evaluator, which ends the program.
    EXPECT_EXIT(starve(match, 0), testing::ExitedWithCode(10), "Out of memory!\n$");
    for (int left = 1; left < 8; ++left)
        EXPECT_EXIT(starve(evaluate, left), testing::ExitedWithCode(10), "Out of memory!\n$");
    EXPECT_EXIT(starve(evaluate, 8), testing::ExitedWithCode(0), "");
    GTEST_FLAG_SET(death_test_style, "fast");
}

} // namespace
