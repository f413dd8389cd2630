#include "search_tree.h"

#include "tool/loader.h"
#include "tool/options.h"
#include "tool/report.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

constexpr char product[] = "[key.o][input]\ndefine=getkey,FUNCTION,GLOBAL,40\n"
                           "define=keys,DATA,GLOBAL,0\nsize=100\n";

struct Report : testing::Test {
    const TREE tree;
    TVKINFO *info = nullptr;

    Report() {
        TREE::makefile("p.tvk", product);
        info = tvkload("p.tvk");
        postheader = "\n";
    }
    ~Report() override {
        tvkfree(info);
        OPTverbose = 2;
        postheader = "";
    }

    int write(const char *path, const char *symbol, const char *file = nullptr) {
        char *symbols[] = {const_cast<char *>(symbol)};
        char *files[] = {const_cast<char *>(file)};
        return tvkreport(path, info, symbols, symbol != nullptr ? 1 : 0, files,
                         file != nullptr ? 1 : 0, 1, 1, 1, INT_MAX);
    }
};

TEST_F(Report, WritesNothingOrSaysThatItFailed) {
    TVKINFO *none = nullptr;
    std::swap(info, none);
    EXPECT_EQ(write("out", "getkey"), 0);
    EXPECT_FALSE(std::filesystem::exists("out"));
    std::swap(info, none);
    testing::internal::CaptureStderr();
    EXPECT_EQ(write("missing/out", "getkey"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    EXPECT_EQ(write("/dev/full", "getkey"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tolvik: ERROR: could not write the report '/dev/full'\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(write("", nullptr, "unknown.o"), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// Records that were put together by hand carry none of what the loader knows beside.
TEST_F(Report, CountsReferencesInStoresMadeByHand) {
    OPTverbose = 0;
    _tagfile *file = finew("hand.o", "");
    file->refers = slnew();
    file->refers->symbol = symfind(info->symtable, "keys");
    file->next = info->files;
    info->files = file;
    testing::internal::CaptureStdout();
    printsymbolreport(stdout, file->refers->symbol, info, 0, 1, 0, 0);
    printheader(stdout, "none at verbosity 0");
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "keys                                     1 refs\n");
}

} // namespace
