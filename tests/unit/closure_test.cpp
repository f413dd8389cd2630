#include "report/closure.h"
#include "report/totals.h"
#include "support.h"

#include <deque>
#include <numeric>
#include <random>
#include <vector>

namespace {

using std::string;

// A store of files 0 to n - 1, file i of size i + 1 and defining symbol i; built by hand.
struct MAP {
    TVKINFO info = {};
    std::vector<_tagfile> files;
    std::vector<_tagsymbol> symbols;
    std::vector<string> names;
    std::deque<_tagsymlist> nodes;

    explicit MAP(size_t n) : files(n), symbols(n), names(n) {
        for (size_t i = 0; i < n; ++i) {
            names[i] = std::to_string(i);
            files[i].name = symbols[i].name = names[i].data();
            files[i].size = static_cast<int32_t>(i) + 1;
            files[i].next = info.files;
            info.files = symbols[i].file = &files[i];
        }
    }
    // Adds a reference at the front of the file's list.
    void refer(size_t from, size_t to) {
        nodes.push_back({&symbols[to], files[from].refers});
        files[from].refers = &nodes.back();
    }
    // Of the files from the last to the first.
    std::vector<int64_t> totals(int limit) const {
        GRAPH graph;
        EXPECT_TRUE(makegraph(&graph, &info, false));
        std::vector<int32_t> all(files.size());
        std::iota(all.begin(), all.end(), 0);
        int64_t *sums = linktotals(&graph, limit, all.data(), graph.count);
        std::vector<int64_t> result(sums, sums + files.size());
        gfree(sums);
        freegraph(&graph);
        return result;
    }
};

string shown(const _tagfilelist *list) {
    string text;
    for (; list != nullptr; list = list->next)
        text += string(list->file->name) + "@" + std::to_string(list->level) + "[" +
                list->symbol->name + "] ";
    return text;
}

TEST(Closure, ListsFilesDepthFirstWhereFirstReached) {
    MAP map(5); // 0 refers to 1 and 2; 1 to 3; 2 to 1 and 4; 3 to 0 and 2
    const size_t edges[][2] = {{0, 2}, {0, 1}, {1, 3}, {2, 4}, {2, 1}, {3, 2}, {3, 0}};
    for (const auto &edge : edges)
        map.refer(edge[0], edge[1]);
    const struct {
        int limit;
        const char *result;
    } cases[] = {{0, "0@0[0] "},
                 {1, "0@0[0] 1@1[1] 2@1[2] "},
                 {2, "0@0[0] 1@1[1] 3@2[3] 2@1[2] 4@2[4] "},
                 // 2 is first reached at level 3, and not followed there.
                 {3, "0@0[0] 1@1[1] 3@2[3] 2@3[2] "},
                 {INT32_MAX, "0@0[0] 1@1[1] 3@2[3] 2@3[2] 4@4[4] "}};
    for (const auto &c : cases) {
        _tagfilelist *list = symneedfiles(&map.symbols[0], nullptr, c.limit, 0);
        EXPECT_EQ(shown(list), c.result) << c.limit;
        flfree(list);
    }
}

TEST(Closure, ExtendsListsOfAnyOrigin) {
    MAP map(4);
    map.refer(1, 2);
    map.refer(1, 0);
    _tagsymbol unknown = {};
    EXPECT_EQ(symneedfiles(&unknown, nullptr, 9, 0), nullptr);
    _tagfilelist *byHand = flnew();
    *byHand = {&map.files[0], 7, &map.symbols[0], nullptr, nullptr, 0};
    _tagfilelist *other = symneedfiles(&map.symbols[1], nullptr, 9, 0);
    EXPECT_EQ(symneedfiles(&map.symbols[1], byHand, 9, 3), byHand);
    EXPECT_EQ(shown(byHand), "0@7[0] 1@3[1] 2@4[2] ");
    EXPECT_EQ(symneedfiles(&map.symbols[3], other, 9, 5), other); // another list grew meanwhile
    EXPECT_EQ(symneedfiles(&map.symbols[2], other, 9, 5), other);
    EXPECT_EQ(shown(other), "1@0[1] 0@1[0] 2@1[2] 3@5[3] ");
    EXPECT_EQ(symneedfiles(&unknown, byHand, 9, 0), byHand);
    flfree(byHand);
    flfree(other);
}

// Groups of files that reach each other, and more groups than one block of bits holds.
TEST(Closure, TotalsAreTheSumsOfTheClosures) {
    std::mt19937 generator(7);
    for (const size_t n : {size_t{0}, size_t{2}, size_t{40}, size_t{1600}}) {
        for (const int kind : {1, 2, 3}) {
            MAP map(n);
            for (size_t i = 0; i < n * static_cast<size_t>(kind); ++i) {
                const size_t from = generator() % n;
                const size_t to = generator() % n;
                const bool keep = from > to || kind == 3 || generator() % 200 == 0;
                map.refer(keep ? from : to, keep ? to : from);
            }
            for (const int limit : {0, 1, 2, 5, INT32_MAX}) {
                const std::vector<int64_t> totals = map.totals(limit);
                for (size_t i = 0; i < n; ++i) {
                    _tagfilelist *list = symneedfiles(&map.symbols[i], nullptr, limit, 0);
                    int64_t sum = 0;
                    for (const _tagfilelist *e = list; e != nullptr; e = e->next)
                        sum += e->file->size;
                    flfree(list);
                    ASSERT_EQ(totals[n - 1 - i], sum)
                        << n << " files, kind " << kind << ", file " << i;
                }
            }
        }
    }
}

TEST(Closure, FollowsChainsOfAnyLength) {
    constexpr size_t n = 300000;
    MAP map(n);
    for (size_t i = 0; i + 1 < n; ++i)
        map.refer(i, i + 1);
    _tagfilelist *list = symneedfiles(&map.symbols[0], nullptr, INT32_MAX, 0);
    EXPECT_EQ(list->last->level, static_cast<int>(n) - 1);
    flfree(list);
    EXPECT_EQ(map.totals(INT32_MAX).back(), int64_t{n} * (n + 1) / 2);
}

} // namespace
