#include "report/closure.h"
#include "report/output.h"
#include "report/totals.h"
#include "support.h"

#include <deque>
#include <numeric>
#include <random>
#include <vector>

namespace {

// A store of n files, file i of size i + 1 and defining symbol i; built by hand.
struct MAP {
    TVKINFO info = {};
    std::vector<_tagfile> files;
    std::vector<_tagsymbol> symbols;
    std::deque<_tagsymlist> nodes;

    explicit MAP(size_t n) : files(n), symbols(n) {
        for (size_t i = 0; i < n; ++i) {
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
        LINKWALK walk;
        EXPECT_TRUE(makegraph(&graph, &info, false, nullptr, 0) && makewalk(&walk, &graph));
        std::vector<int32_t> all(files.size());
        std::iota(all.begin(), all.end(), 0);
        int64_t *sums = linktotals(&walk, limit, all.data(), graph.count);
        std::vector<int64_t> result(sums, sums + files.size());
        gfree(sums);
        freewalk(&walk);
        freegraph(&graph);
        return result;
    }
    // "file@level[symbol] " for each entry.
    std::string shown(const _tagfilelist *list) const {
        std::string text;
        for (; list != nullptr; list = list->next)
            text += std::to_string(list->file - files.data()) + "@" + std::to_string(list->level) +
                    "[" + std::to_string(list->symbol - symbols.data()) + "] ";
        return text;
    }
};

TEST(Closure, ListsFilesDepthFirstWhereFirstReached) {
    MAP map(5); // 0 refers to 1 and 2; 1 to 3; 2 to 1 and 4; 3 to 0 and 2
    const size_t edges[][2] = {{0, 2}, {0, 1}, {1, 3}, {2, 4}, {2, 1}, {3, 2}, {3, 0}};
    for (const auto &[from, to] : edges)
        map.refer(from, to);
    const std::pair<int, const char *> cases[] = {
        {0, "0@0[0] "},
        {2, "0@0[0] 1@1[1] 3@2[3] 2@1[2] 4@2[4] "},
        {3, "0@0[0] 1@1[1] 3@2[3] 2@3[2] "}, // 2 is first reached at level 3
        {INT32_MAX, "0@0[0] 1@1[1] 3@2[3] 2@3[2] 4@4[4] "}};
    for (const auto &[limit, result] : cases) {
        _tagfilelist *list = symneedfiles(&map.symbols[0], nullptr, limit, 0);
        EXPECT_EQ(map.shown(list), result) << limit;
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
    *byHand = {&map.files[0], 7, &map.symbols[0], nullptr, 0};
    _tagfilelist *other = symneedfiles(&map.symbols[1], nullptr, 9, 0);
    EXPECT_EQ(symneedfiles(&map.symbols[1], byHand, 9, 3), byHand);
    EXPECT_EQ(map.shown(byHand), "0@7[0] 1@3[1] 2@4[2] ");
    EXPECT_EQ(symneedfiles(&map.symbols[3], other, 9, 5), other); // another list grew meanwhile
    EXPECT_EQ(symneedfiles(&unknown, other, 9, 0), other);
    EXPECT_EQ(map.shown(other), "1@0[1] 0@1[0] 2@1[2] 3@5[3] ");
    flfree(byHand);
    flfree(other);
}

// Groups of files that reach each other, and more groups than one block of bits holds. The kinds
// are no circles, few and many.
TEST(Closure, TotalsAreTheSumsOfTheClosures) {
    std::mt19937 generator(7);
    for (const size_t n : {size_t{0}, size_t{40}, size_t{1600}}) {
        for (const unsigned kind : {0U, 1U, 100U}) {
            MAP map(n);
            for (size_t i = 0; i < 2 * n; ++i) {
                const size_t from = generator() % n;
                const size_t to = generator() % n;
                const bool keep = from > to || generator() % 200 < kind;
                map.refer(keep ? from : to, keep ? to : from);
            }
            for (const int limit : {0, 2, 5, INT32_MAX}) {
                const std::vector<int64_t> totals = map.totals(limit);
                for (size_t i = 0; i < n; ++i) {
                    _tagfilelist *list = symneedfiles(&map.symbols[i], nullptr, limit, 0);
                    int64_t sum = 0;
                    for (const _tagfilelist *e = list; e != nullptr; e = e->next)
                        sum += e->file->size;
                    flfree(list);
                    ASSERT_EQ(totals[n - 1 - i], sum) << n << " files, kind " << kind;
                    ASSERT_EQ(symneedbytes(&map.symbols[i], limit), sum);
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
    const _tagfilelist *last = list;
    while (last->next != nullptr)
        last = last->next;
    EXPECT_EQ(last->level, static_cast<int>(n) - 1);
    flfree(list);
    EXPECT_EQ(map.totals(INT32_MAX).back(), int64_t{n} * (n + 1) / 2);
}

// Texts and indents around the buffer's size.
TEST(Output, PassesItsBuffer) {
    std::string expected;
    const std::string written = printed([&] {
        OUTPUT out = beginoutput(stdout);
        for (const size_t size : {OUTPUTSIZE - 1, OUTPUTSIZE, 2 * OUTPUTSIZE}) {
            expected += std::string(size, 'x') + std::string(size, ' ');
            puttext(&out, expected.c_str() + expected.size() - 2 * size, size);
            putspaces(&out, static_cast<int64_t>(size));
        }
        flushoutput(&out);
    });
    EXPECT_TRUE(written == expected);
}

} // namespace
