// Walking every file's closure takes time in proportion to files times references. Without a
// level limit, the closure does not depend on the order of the walk:
//
// 1. Files that reach each other (a group) have the same closure. Tarjan's algorithm finds the
//    groups and numbers them so that a group's targets have lower numbers. Real products are one
//    large group and a fringe.
// 2. A group with one target links in that target's closure and itself.
// 3. Other groups need their closures, because targets may share files. A closure is a set of
//    bits, 512 groups at a time. A group's row is the union of its targets' rows; its sum is the
//    sum of its first target and the sizes of the bits that this target does not have. A target
//    that is in another target's row is removed for good; most are.
//
// Time is at most references times groups / 512, memory 64 bytes a group. With a level limit
// every file is walked.
#include "report/totals.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace {

constexpr int ROWWORDS = 8;
constexpr int32_t ROWBITS = ROWWORDS * 64;

struct ROW {
    uint64_t words[ROWWORDS];
};

// The groups and the references between them, each once, the highest targets first. All arrays but
// `size` are parts of the block at `groupof`.
struct GROUPS {
    int32_t count;
    int64_t *size;    // sum of a group's files
    int32_t *groupof; // each file's group
    int32_t *members; // files, group by group
    int32_t *first;   // group i has the targets first[i] to last[i] - 1
    int32_t *last;
    int32_t *firstmember; // count + 1
    int32_t *target;
};

bool newgroups(GROUPS *groups, const GRAPH &graph) {
    const int64_t n = graph.count;
    auto *block = galloclarge<int32_t>(5 * n + 1 + graph.first[n]);
    *groups = {};
    groups->size = galloclarge<int64_t>(n);
    groups->groupof = block;
    if (groups->size == nullptr || block == nullptr)
        return false;
    groups->members = block + n;
    groups->first = block + 2 * n;
    groups->last = block + 3 * n;
    groups->firstmember = block + 4 * n;
    groups->target = block + 5 * n + 1;
    return true;
}

// Tarjan's algorithm without recursion.
struct TARJAN {
    int32_t *visit; // each file's number in the order of visits, from 1; 0 before its visit
    int32_t *low;   // lowest visit that the file reaches in `open`
    int32_t *next;  // each file's next reference
    int32_t *open;  // stack of visited files without a group
    int32_t *path;  // stack of files being followed
    int32_t visits, opens, depth;
};

void enter(TARJAN *t, const GRAPH &graph, int32_t file) {
    t->visit[file] = t->low[file] = ++t->visits;
    t->next[file] = graph.first[file];
    t->open[t->opens++] = file;
    t->path[t->depth++] = file;
}

// Ends a file whose references are all followed. The first file of a group closes the group.
void leave(TARJAN *t, GROUPS *groups, int32_t file) {
    --t->depth;
    if (t->depth > 0) {
        int32_t &above = t->low[t->path[t->depth - 1]];
        above = std::min(above, t->low[file]);
    }
    if (t->low[file] != t->visit[file])
        return;
    int32_t used = groups->firstmember[groups->count];
    int32_t member = -1;
    while (member != file) {
        member = t->open[--t->opens];
        groups->groupof[member] = groups->count;
        groups->members[used++] = member;
    }
    groups->firstmember[++groups->count] = used;
}

void followall(TARJAN *t, GROUPS *groups, const GRAPH &graph) {
    while (t->depth > 0) {
        const int32_t file = t->path[t->depth - 1];
        if (t->next[file] == graph.first[file + 1]) {
            leave(t, groups, file);
            continue;
        }
        const int32_t target = graph.target[t->next[file]++];
        if (t->visit[target] == 0)
            enter(t, graph, target);
        else if (groups->groupof[target] < 0)
            t->low[file] = std::min(t->low[file], t->visit[target]);
    }
}

bool findgroups(GROUPS *groups, const GRAPH &graph) {
    const int32_t n = graph.count;
    auto *memory = galloclarge<int32_t>(int64_t{5} * n);
    if (memory == nullptr)
        return false;
    TARJAN t = {memory, memory + n, memory + n * 2L, memory + n * 3L, memory + n * 4L, 0, 0, 0};
    std::fill_n(t.visit, n, 0);
    std::fill_n(groups->groupof, n, -1);
    groups->firstmember[0] = 0;
    for (int32_t file = 0; file < n; ++file) {
        if (t.visit[file] != 0)
            continue;
        enter(&t, graph, file);
        followall(&t, groups, graph);
    }
    gfree(memory);
    return true;
}

// Sets the groups' sizes and targets.
bool joingroups(GROUPS *groups, const GRAPH &graph) {
    auto *seen = galloclarge<int32_t>(groups->count);
    if (seen == nullptr)
        return false;
    std::fill_n(seen, groups->count, -1);
    int32_t used = 0;
    for (int32_t group = 0; group < groups->count; ++group) {
        groups->first[group] = used;
        groups->size[group] = 0;
        seen[group] = group;
        for (int32_t i = groups->firstmember[group]; i < groups->firstmember[group + 1]; ++i) {
            const int32_t file = groups->members[i];
            groups->size[group] += graph.files[file]->size;
            for (int32_t j = graph.first[file]; j < graph.first[file + 1]; ++j) {
                const int32_t target = groups->groupof[graph.target[j]];
                if (seen[target] != group)
                    groups->target[used++] = target;
                seen[target] = group;
            }
        }
        groups->last[group] = used;
        std::sort(groups->target + groups->first[group], groups->target + used,
                  std::greater<int32_t>());
    }
    gfree(seen);
    return true;
}

bool hasbit(const ROW &row, int32_t bit) {
    return (row.words[bit / 64] >> bit % 64 & 1) != 0;
}

// Returns the sum of the sizes of the groups in `row` but not in `known`. `sizes` starts at the
// row's first bit.
int64_t sumbeyond(const ROW &row, const ROW &known, const int64_t *sizes) {
    int64_t sum = 0;
    for (int i = 0; i < ROWWORDS; ++i) {
        for (uint64_t bits = row.words[i] & ~known.words[i]; bits != 0; bits &= bits - 1)
            sum += sizes[i * 64 + std::countr_zero(bits)];
    }
    return sum;
}

// Finds the groups from `base` to base + ROWBITS - 1 that each group reaches, and adds their sizes
// to the group's total.
void addblock(GROUPS *groups, int32_t base, ROW *rows, int64_t *sums, int64_t *totals) {
    static const ROW nothing = {};
    const int64_t *sizes = groups->size + base;
    for (int32_t group = base; group < groups->count; ++group) {
        ROW row = {};
        int32_t *from = groups->target + groups->first[group];
        const int32_t *to = groups->target + groups->last[group];
        const int32_t known = from < to && *from >= base ? *from : -1;
        int32_t *kept = from;
        for (; from < to && *from >= base; ++from) {
            if (*from < base + ROWBITS && hasbit(row, *from - base))
                continue;
            for (int i = 0; i < ROWWORDS; ++i)
                row.words[i] |= rows[*from].words[i];
            *kept++ = *from;
        }
        if (kept != from) {
            kept = std::copy(static_cast<const int32_t *>(from), to, kept);
            groups->last[group] = static_cast<int32_t>(kept - groups->target);
        }
        if (group < base + ROWBITS)
            row.words[(group - base) / 64] |= uint64_t{1} << (group - base) % 64;
        rows[group] = row;
        sums[group] = (known >= 0 ? sums[known] : 0) +
                      sumbeyond(row, known >= 0 ? rows[known] : nothing, sizes);
        totals[group] += sums[group];
    }
}

// Sets the totals of all groups. False when memory runs out.
bool sumgroups(GROUPS *groups, int64_t *totals) {
    bool simple = true;
    for (int32_t group = 0; group < groups->count; ++group) {
        const int32_t targets = groups->last[group] - groups->first[group];
        simple = simple && targets <= 1;
        totals[group] = groups->size[group];
        if (targets == 1)
            totals[group] += totals[groups->target[groups->first[group]]];
    }
    if (simple)
        return true;
    auto *rows = galloclarge<ROW>(groups->count);
    auto *sums = galloclarge<int64_t>(groups->count);
    const bool whole = rows != nullptr && sums != nullptr;
    if (whole) {
        std::fill_n(totals, groups->count, 0);
        for (int32_t base = 0; base < groups->count; base += ROWBITS)
            addblock(groups, base, rows, sums, totals);
    }
    grelease(rows);
    grelease(sums);
    return whole;
}

bool completetotals(const GRAPH &graph, int64_t *totals) {
    GROUPS groups;
    auto *grouptotals = galloclarge<int64_t>(graph.count);
    const bool whole = newgroups(&groups, graph) && grouptotals != nullptr &&
                       findgroups(&groups, graph) && joingroups(&groups, graph) &&
                       sumgroups(&groups, grouptotals);
    for (int32_t file = 0; whole && file < graph.count; ++file)
        totals[file] = grouptotals[groups.groupof[file]];
    grelease(groups.size);
    grelease(groups.groupof);
    grelease(grouptotals);
    return whole;
}

bool limitedtotals(const GRAPH &graph, int limit, int64_t *totals) {
    LINKWALK walk;
    if (!makewalk(&walk, &graph))
        return false;
    for (int32_t file = 0; file < graph.count; ++file) {
        restartwalk(&walk);
        walkfrom(&walk, file, nullptr, limit, 0);
        totals[file] = 0;
        for (int32_t i = 0; i < walk.count; ++i)
            totals[file] += graph.files[walk.reached[i].file]->size;
    }
    freewalk(&walk);
    return true;
}

} // namespace

int64_t *linktotals(const GRAPH *graph, int limit) {
    auto *totals = galloclarge<int64_t>(graph->count);
    if (totals == nullptr)
        return nullptr;
    const bool whole = limit < graph->count ? limitedtotals(*graph, limit, totals)
                                            : completetotals(*graph, totals);
    if (!whole)
        grelease(totals);
    return totals;
}
