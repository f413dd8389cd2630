#include "base/options.h"
#include "search/argv.h"
#include "search/natural.h"
#include "search/sort.h"
#include "support.h"

#include <iterator>
#include <sstream>
#include <vector>

namespace {

TEST(Natural, ComparesDigitRunsAsNumbers) {
    const std::string many(99, '9');
    const struct {
        std::string a, b;
        int result;
    } cases[] = {
        {"a2", "a10", -1},      {"file10.c", "file9.c", 1},
        {"a007b", "a7b", 0},    {"a07b", "a7c", -1},
        {"a", "ab", -1},        {"", "", 0},
        {"\xE4", "a", -1},      {"1", ":", -1},
        {many, many + "1", -1}, {"x" + many, "x9223372036854775807", 0},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(BRAX_strcmp(c.a.c_str(), c.b.c_str()), c.result) << c.a << " " << c.b;
        EXPECT_EQ(BRAX_strcmp(c.b.c_str(), c.a.c_str()), -c.result) << c.a << " " << c.b;
    }
}

struct Sort : testing::Test {
    void TearDown() override {
        freeFiles();
        BRAX_ini();
    }
    // Sources from one text; destinations and numbers mirror them.
    static void fill(const std::string &names) {
        freeFiles();
        std::istringstream stream(names);
        const std::vector<std::string> all{std::istream_iterator<std::string>(stream), {}};
        const auto count = static_cast<int64_t>(all.size());
        OPTmakedatelist = OPTmakesizelist = 1;
        BRAXsargv = gallocarray<char *>(count);
        BRAXdargv = gallocarray<char *>(count);
        BRAXdateargv = gallocarray<int32_t>(count);
        BRAXsizeargv = gallocarray<int32_t>(count);
        for (const std::string &name : all) {
            BRAXsargv[BRAXargnum] = galloctext(name.c_str());
            BRAXdargv[BRAXargnum] = galloctext((name + ".d").c_str());
            BRAXdateargv[BRAXargnum] = -BRAXargnum;
            BRAXsizeargv[BRAXargnum] = atoi(name.c_str());
            ++BRAXargnum;
        }
    }
    static std::string names() {
        std::string all;
        for (int i = 0; i < BRAXargnum; ++i) {
            EXPECT_EQ(BRAXdargv[i], std::string(BRAXsargv[i]) + ".d");
            all += std::string(i > 0 ? " " : "") + BRAXsargv[i];
        }
        return all;
    }
};

TEST_F(Sort, SortsABatchByEveryKey) {
    const struct {
        int key, byDirs, start, keepOpts;
        const char *before, *after;
    } cases[] = {
        {1, 0, 0, 0, "b/2 b/1 a10 a9 b/0", "b/1 b/2 a9 a10 b/0"},
        {1, 1, 1, 0, "z c b a", "z a b c"},
        {1, 0, 0, 1, "c b -x a3 a1 .y d", "b c -x a1 a3 .y d"},
        {2, 0, 0, 0, "a.z .b x.d/noext x.c", ".b a.z x.d/noext x.c"},
        {3, 0, 0, 0, "c a b", "b a c"},
        {4, 0, 0, 0, "10 9 11 1", "1 9 10 11"},
        {5, 0, 0, 0, "c a b", "a b c"},
        {7, 1, 0, 0, "b/3 a/2 c a/1", "a/1 a/2 b/3 c"},
    };
    for (const auto &c : cases) {
        fill(c.before);
        OPTsorttype = c.key;
        OPTsortbydirs = c.byDirs;
        OPTstartsortat = c.start;
        OPTkeepopts = c.keepOpts;
        BRAX_sortbatch();
        EXPECT_EQ(names(), c.after) << "key " << c.key;
    }
}

// The sort in its recursive form on direct comparisons.
void recursivesort(int low, int high, int key, int bydirs) {
    if (low >= high)
        return;
    const int pivot = low + rand() % (high - low);
    BRAX_exchange(pivot, low);
    const int split = BRAX_partition(low, high, key, bydirs);
    recursivesort(low, split, key, bydirs);
    recursivesort(split + 1, high, key, bydirs);
}

// The pivots decide the order of equal elements.
TEST_F(Sort, OrderOfEqualElementsFollowsTheRecursiveForm) {
    const char *pieces[] = {"0", "1", "00", "12", "a", "Z", "/", ".", ".c", "\x80", "lib/"};
    for (const std::string &common : {std::string("deep/down/"), std::string(300, '7')}) {
        std::string all;
        for (int i = 0; i < 2000; ++i)
            all += common + pieces[rand() % 11] + pieces[rand() % 11] + pieces[rand() % 11] + " ";
        for (int key = 0; key <= 8; ++key) {
            for (int byDirs : {0, 1}) {
                fill(all);
                srand(1);
                recursivesort(3, BRAXargnum - 2, key, byDirs);
                const std::string expected = names();
                fill(all);
                srand(1);
                BRAX_qsort(3, BRAXargnum - 2, key, byDirs);
                EXPECT_EQ(names(), expected) << key << " " << byDirs;
            }
        }
    }
}

} // namespace
