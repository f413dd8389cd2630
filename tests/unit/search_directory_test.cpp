#include "search/directory.h"
#include "support.h"

#include <cstring>
#include <ctime>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Directory : testing::Test, TREE {};

TEST_F(Directory, ReadsAttributesAndPassesADanglingLink) {
    makefile("plain", "12345");
    makefile("locked");
    makedir("sub");
    chmod("locked", 0444);
    std::filesystem::create_symlink("nowhere", "dangling");
    std::filesystem::create_symlink("sub", "linked");
    std::map<std::string, uint32_t> quick;
    SGI_finddata data;
    SGI_handle handle = SGIfindopen();
    for (int state; (state = SGIfindquick(handle, &data)) != 0;)
        quick[data.name] = state == SGIFOUNDUNKNOWN ? 99 : data.attrib;
    SGIfindclose(handle);
    const std::map<std::string, uint32_t> expected = {{".", 1},      {"..", 1},  {"plain", 0},
                                                      {"locked", 0}, {"sub", 1}, {"dangling", 99},
                                                      {"linked", 1}};
    EXPECT_EQ(quick, expected);
    const std::pair<const char *, uint32_t> cases[] = {
        {"locked", 2U}, {"sub", 1}, {"linked", 1}, {"plain", 0}};
    for (const auto &[name, attrib] : cases) {
        data = {"", 7, 7, 7};
        strcpy(data.name, name);
        EXPECT_TRUE(SGIfindfill(&data));
        EXPECT_EQ(data.attrib, attrib) << name;
    }
    EXPECT_EQ(data.size, 5);
    EXPECT_LT(time(nullptr) - data.time, 60);
    // The documented listing ends at the link.
    handle = SGIfindfirst(&data);
    while (SGIfindnext(handle, &data) == 1)
        EXPECT_STRNE(data.name, "dangling");
    EXPECT_STREQ(data.name, "dangling");
    EXPECT_EQ(data.attrib + static_cast<unsigned>(data.time + data.size), 0U);
    EXPECT_EQ(SGIfindclose(handle), 1);
}

TEST(Attributes, MapTheThirdBitToSystemAndHidden) {
    const std::pair<uint32_t, int> cases[] = {{0U, 0}, {1, 1}, {2, 2}, {4, 12}, {7, 15}};
    for (const auto &[attrib, expected] : cases) {
        const SGI_finddata data = {"x", attrib, 0, 0};
        const uint8_t byte = BRAX_makeattrib(&data);
        EXPECT_EQ(byte, expected);
        EXPECT_EQ(BRAX_isdirectory(byte) + 2 * BRAX_isreadonly(byte) + 4 * BRAX_issystem(byte) +
                      8 * BRAX_ishidden(byte),
                  expected);
    }
}

TEST_F(Directory, FileDateCountsMonthsFromZeroAndIgnoresDirectories) {
    makefile("sub/Only.c");
    makefile("Here.c");
    const time_t now = time(nullptr);
    const tm *date = localtime(&now);
    const int today = (1900 + date->tm_year) * 10000 + date->tm_mon * 100 + date->tm_mday;
    EXPECT_EQ(BRAX_filedate("Here.c"), today);
    EXPECT_EQ(BRAX_filedate("other/place/hERE.C"), today);
    EXPECT_EQ(BRAX_filedate("some/dir/"), today);
    EXPECT_EQ(BRAX_filedate("sub/Only.c"), 0);
    EXPECT_EQ(BRAX_filedate("h*.C"), today);
    EXPECT_EQ(BRAX_filedate("*.h"), 0);
    makefile("a#.c");
    EXPECT_EQ(BRAX_filedate("a#.c"), 0) << "no name has digits there";
}

TEST_F(Directory, APlaceIsFoundAgainAfterItMoved) {
    makedir("a");
    ASSERT_EQ(chdir("a"), 0);
    SGI_place place;
    ASSERT_TRUE(SGIsaveplace(&place));
    ASSERT_EQ(chdir(".."), 0);
    ASSERT_EQ(rename("a", "b"), 0);
    EXPECT_TRUE(SGIreturn(&place));
    SGIforgetplace(&place);
    EXPECT_EQ(here(), root + "/b");
}

} // namespace
