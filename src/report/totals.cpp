// Walking every file's closure takes time in proportion to files times references. Without a
// level limit, the closure does not depend on the order of the walk:
//
// 1. A group has one closure. With one target it is the target's closure and the group.
// 2. A group with several targets (a join) needs the sum of a union. A group with one parent
//    belongs to its parent's tree, because a join that reaches it is or reaches the parent. A union
//    is a sum of whole trees: a set of bits, one for each group with several parents. Only joins
//    and the groups that they reach count as parents.
// 3. The sets are found 512 bits (a row) at a time, only for the groups that reach one of the 512.
//    A group's row is the union of its targets' rows. Its sum is the sum of its first target and
//    the trees of the bits that this target does not have. A target that is in another target's
//    row is dropped; most are. The last bits are first: most targets are dropped in the first rows
//    that they take part in.
#include "report/totals.h"

#include "mem/arena.h"
#include "mem/galloc.h"
#include "report/groups.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace {

constexpr int ROWWORDS = 8;
constexpr int32_t ROWBITS = ROWWORDS * 64;

struct ROW {
    int64_t sum; // of the trees
    uint64_t words[ROWWORDS];
};

// All arrays of int32_t are parts of the block at `column`; `total` is part of that at `tree`.
struct SETS {
    int32_t columns;
    int32_t *column;      // the groups that have a bit, ascending
    int32_t *columnof;    // each group's bit, or -1
    int32_t *firstparent; // group i has the parents firstparent[i] to endparent[i] - 1
    int32_t *endparent;
    int32_t *parent;
    int64_t *tree;    // size of each group's tree, its own size included
    int64_t *total;   // each group's result
    ROW *rows;        // with columns: each active group's row, itself included
    uint64_t *active; // with columns: a bit for each group that reaches one of the row's bits

    // The columns of the rows: base to end - 1.
    int32_t base;
    int32_t end;
    int64_t sizes[ROWBITS]; // of their trees
};

bool newrows(SETS *sets, int32_t n) {
    sets->rows = galloclarge<ROW>(n);
    sets->active = galloclarge<uint64_t>(n / 64 + 1);
    return sets->rows != nullptr && sets->active != nullptr;
}

void freesets(SETS *sets) {
    grelease(sets->column);
    grelease(sets->tree);
    grelease(sets->rows);
    grelease(sets->active);
}

// Sets the parents. Both loops meet a group after its parents: the first counts them, the second
// appends each.
void findparents(const GROUPS &groups, SETS *sets) {
    int32_t *end = sets->endparent;
    std::fill_n(end, groups.count, 0);
    for (const bool counting : {true, false}) {
        for (int32_t group = groups.count - 1; group >= 0; --group) {
            const int32_t none = counting ? 0 : sets->firstparent[group];
            if (end[group] == none && groups.last[group] - groups.first[group] < 2)
                continue;
            for (int32_t i = groups.first[group]; i < groups.last[group]; ++i) {
                const int32_t place = end[groups.target[i]]++;
                if (!counting)
                    sets->parent[place] = group;
            }
        }
        if (counting) {
            std::exclusive_scan(end, end + groups.count, sets->firstparent, 0);
            std::copy_n(sets->firstparent, groups.count, end);
        }
    }
}

void findtrees(const GROUPS &groups, SETS *sets) {
    std::copy_n(groups.size, groups.count, sets->tree);
    for (int32_t group = 0; group < groups.count; ++group) {
        const int32_t parents = sets->endparent[group] - sets->firstparent[group];
        sets->columnof[group] = parents > 1 ? sets->columns : -1;
        if (parents > 1)
            sets->column[sets->columns++] = group;
        else if (parents == 1)
            sets->tree[sets->parent[sets->firstparent[group]]] += sets->tree[group];
    }
}

bool makesets(SETS *sets, const GROUPS &groups) {
    const int64_t n = groups.count;
    *sets = {};
    sets->column = galloclarge<int32_t>(4 * n + (n > 0 ? groups.last[n - 1] : 0));
    sets->tree = galloclarge<int64_t>(2 * n);
    if (sets->column == nullptr || sets->tree == nullptr)
        return false;
    sets->columnof = sets->column + n;
    sets->firstparent = sets->column + 2 * n;
    sets->endparent = sets->column + 3 * n;
    sets->parent = sets->column + 4 * n;
    sets->total = sets->tree + n;
    findparents(groups, sets);
    findtrees(groups, sets);
    return true;
}

bool hasbit(const uint64_t *words, int32_t bit) {
    return (words[bit / 64] >> bit % 64 & 1) != 0;
}

void setbit(uint64_t *words, int32_t bit) {
    words[bit / 64] |= uint64_t{1} << bit % 64;
}

// Returns the sum of the trees in `row` but not in `known`. `sizes` has a row's trees.
int64_t sumbeyond(const ROW &row, const ROW &known, const int64_t *sizes) {
    int64_t sum = 0;
    for (int i = 0; i < ROWWORDS; ++i) {
        for (uint64_t bits = row.words[i] & ~known.words[i]; bits != 0; bits &= bits - 1)
            sum += sizes[i * 64 + std::countr_zero(bits)];
    }
    return sum;
}

// Whether the group's bit is in the rows.
bool isinrows(const SETS &sets, int32_t group) {
    return sets.columnof[group] >= sets.base && sets.columnof[group] < sets.end;
}

// Sets the row of an active group. Drops targets that it reaches through others, and adds itself to
// the parents of those that it keeps.
void makerow(GROUPS *groups, SETS *sets, int32_t group) {
    static const ROW nothing = {};
    const ROW *known = &nothing;
    ROW row = {};
    int32_t *from = groups->target + groups->first[group];
    const int32_t *to = groups->target + groups->last[group];
    int32_t *kept = from;
    for (; from < to && *from >= sets->column[sets->base]; ++from) {
        if (hasbit(sets->active, *from)) {
            if (isinrows(*sets, *from)) {
                if (hasbit(row.words, sets->columnof[*from] - sets->base))
                    continue;
                sets->parent[sets->endparent[*from]++] = group;
            }
            const ROW &target = sets->rows[*from];
            for (int i = 0; i < ROWWORDS; ++i)
                row.words[i] |= target.words[i];
            known = known == &nothing ? &target : known;
        }
        *kept++ = *from;
    }
    if (kept != from) {
        kept = std::move_backward(groups->target + groups->first[group], kept, from);
        groups->first[group] = static_cast<int32_t>(kept - groups->target);
    }
    if (isinrows(*sets, group))
        setbit(row.words, sets->columnof[group] - sets->base);
    row.sum = known->sum + sumbeyond(row, *known, sets->sizes);
    sets->rows[group] = row;
}

// Finds which of the columns of the rows each group reaches, and adds their trees to its total.
void addcolumns(GROUPS *groups, SETS *sets) {
    const int32_t words = groups->count / 64 + 1;
    std::fill_n(sets->active, words, 0);
    for (int32_t i = sets->base; i < sets->end; ++i) {
        sets->sizes[i - sets->base] = sets->tree[sets->column[i]];
        setbit(sets->active, sets->column[i]);
    }
    for (int32_t word = sets->column[sets->base] / 64; word < words; ++word) {
        // Parents have higher numbers: they are met later, perhaps in the same word.
        uint64_t done = 0;
        while ((sets->active[word] & ~done) != 0) {
            const int bit = std::countr_zero(sets->active[word] & ~done);
            const int32_t group = word * 64 + bit;
            done |= uint64_t{1} << bit;
            makerow(groups, sets, group);
            sets->total[group] += sets->rows[group].sum;
            for (int32_t i = sets->firstparent[group]; i < sets->endparent[group]; ++i)
                setbit(sets->active, sets->parent[i]);
            if (isinrows(*sets, group))
                sets->endparent[group] = sets->firstparent[group];
        }
    }
}

// Sets the totals of all groups. False when memory runs out.
bool sumgroups(GROUPS *groups, SETS *sets) {
    if (sets->columns > 0 && !newrows(sets, groups->count))
        return false;
    for (int32_t group = 0; group < groups->count; ++group)
        sets->total[group] = sets->columnof[group] >= 0 ? 0 : sets->tree[group];
    for (sets->end = sets->columns; sets->end > 0; sets->end = sets->base) {
        sets->base = std::max(sets->end - ROWBITS, 0);
        addcolumns(groups, sets);
    }
    for (int32_t group = 0; group < groups->count; ++group) {
        const int32_t *target = groups->target + groups->first[group];
        const int32_t targets = groups->last[group] - groups->first[group];
        if (targets < 2)
            sets->total[group] = groups->size[group] + (targets > 0 ? sets->total[*target] : 0);
    }
    return true;
}

void walktotals(LINKWALK *walk, int limit, const int32_t *files, int32_t count, int64_t *totals) {
    std::fill_n(totals, walk->graph->count, -1);
    for (int32_t i = 0; i < count; ++i) {
        if (totals[files[i]] >= 0)
            continue; // several symbols of a file
        restartwalk(walk);
        walkfrom(walk, files[i], nullptr, limit, 0);
        totals[files[i]] = 0;
        for (int32_t k = 0; k < walk->count; ++k)
            totals[files[i]] += walk->graph->files[walk->reached[k].file]->size;
    }
}

} // namespace

int64_t *linktotals(LINKWALK *walk, int limit, const int32_t *files, int32_t count) {
    GROUPS groups;
    if (!findgroups(&groups, *walk->graph, files, count))
        return nullptr;
    SETS sets;
    auto *totals = galloclarge<int64_t>(walk->graph->count);
    bool whole = makesets(&sets, groups) && totals != nullptr;
    // A file is at most at level height - 1. Few walks take less time than many rows.
    if (whole && (limit < groups.height - 1 || count < sets.columns / ROWBITS)) {
        walktotals(walk, limit, files, count, totals);
    } else if (whole) {
        whole = sumgroups(&groups, &sets);
        for (int32_t i = 0; i < count && whole; ++i)
            totals[files[i]] = sets.total[groups.groupof[files[i]]];
    }
    freesets(&sets);
    freegroups(&groups);
    if (!whole)
        grelease(totals);
    return totals;
}
