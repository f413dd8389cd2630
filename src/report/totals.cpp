// Walking every file's closure takes time in proportion to files times references. Without a
// level limit, the closure does not depend on the order of the walk:
//
// 1. Files that reach each other (a group) have the same closure. Tarjan's algorithm finds the
//    groups and numbers them so that a group's targets have lower numbers. Real products are one
//    large group and a fringe.
// 2. A target that another target surely reaches is dropped. Chains and ladders then have groups
//    of one target, whose closure is the target's and the group itself.
// 3. A group with several targets (a join) needs the sum of a union. A group with one parent
//    belongs to its parent's tree: each join that reaches one of them from outside reaches both. A
//    union is a sum of whole trees. It is kept as a set of bits, one for each group with several
//    parents. Only groups that a join reaches count as parents.
// 4. The sets are found 512 bits (a row) at a time, only for the groups that reach one of the 512.
//    A group's row is the union of its targets' rows. Its sum is the sum of its first target and
//    the trees of the bits that this target does not have. A target that is in another target's
//    row is dropped; most are.
//
// A level limit above the longest path changes nothing. Below it every requested file is walked.
#include "report/totals.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <numeric>

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
    int32_t height;   // no path has more files
    int64_t *size;    // sum of a group's files
    int32_t *groupof; // each file's group; -1 for files that are not reached
    int32_t *members; // files, group by group
    int32_t *first;   // group i has the targets first[i] to last[i] - 1
    int32_t *last;
    int32_t *firstmember; // count + 1
    int32_t *target;
};

int32_t targets(const GROUPS &groups, int32_t group) {
    return groups.last[group] - groups.first[group];
}

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

// The files of a request; null for files 0 to count - 1.
struct REQUEST {
    const int32_t *files;
    int32_t count;
};

int32_t requested(const REQUEST &request, int32_t i) {
    return request.files != nullptr ? request.files[i] : i;
}

// Finds the groups that the requested files reach.
bool findgroups(GROUPS *groups, const GRAPH &graph, const REQUEST &request) {
    const int32_t n = graph.count;
    auto *memory = galloclarge<int32_t>(int64_t{5} * n);
    if (memory == nullptr)
        return false;
    TARJAN t = {memory, memory + n, memory + n * 2L, memory + n * 3L, memory + n * 4L, 0, 0, 0};
    std::fill_n(t.visit, n, 0);
    std::fill_n(groups->groupof, n, -1);
    groups->firstmember[0] = 0;
    for (int32_t i = 0; i < request.count; ++i) {
        const int32_t file = requested(request, i);
        if (t.visit[file] != 0)
            continue;
        enter(&t, graph, file);
        followall(&t, groups, graph);
    }
    gfree(memory);
    return true;
}

// Drops targets that another one surely reaches. Sets low[group] so that the group reaches every
// group from there to itself.
void droptargets(GROUPS *groups, int32_t group, int32_t *low) {
    int32_t *kept = groups->target + groups->first[group];
    const int32_t *to = groups->target + groups->last[group];
    std::sort(kept, groups->target + groups->last[group], std::greater<int32_t>());
    int32_t covered = group; // low of the last kept target
    low[group] = group;
    for (const int32_t *from = kept; from < to; ++from) {
        if (*from >= covered)
            continue;
        covered = low[*from];
        if (*from == low[group] - 1)
            low[group] = covered;
        *kept++ = *from;
    }
    groups->last[group] = static_cast<int32_t>(kept - groups->target);
}

// Sets the groups' sizes and targets, and the height.
bool joingroups(GROUPS *groups, const GRAPH &graph) {
    const int32_t n = groups->count;
    auto *seen = galloclarge<int32_t>(int64_t{3} * n);
    if (seen == nullptr)
        return false;
    int32_t *low = seen + n;
    int32_t *height = low + n;
    std::fill_n(seen, n, -1);
    for (int32_t group = 0; group < n; ++group) {
        const int32_t *members = groups->members + groups->firstmember[group];
        const int32_t count = groups->firstmember[group + 1] - groups->firstmember[group];
        int32_t used = groups->first[group] = group > 0 ? groups->last[group - 1] : 0;
        groups->size[group] = 0;
        height[group] = 0;
        seen[group] = group;
        for (int32_t i = 0; i < count; ++i) {
            groups->size[group] += graph.files[members[i]]->size;
            for (int32_t j = graph.first[members[i]]; j < graph.first[members[i] + 1]; ++j) {
                const int32_t target = groups->groupof[graph.target[j]];
                if (seen[target] != group) {
                    groups->target[used++] = target;
                    height[group] = std::max(height[group], height[target]);
                }
                seen[target] = group;
            }
        }
        groups->last[group] = used;
        height[group] += count;
        groups->height = std::max(groups->height, height[group]);
        droptargets(groups, group, low);
    }
    gfree(seen);
    return true;
}

// The sets of bits. All arrays of int32_t are parts of the block at `column`.
struct SETS {
    int32_t columns;
    int32_t *column;      // the groups that have a bit, ascending
    int32_t *columnof;    // each group's bit, or INT32_MIN
    int32_t *firstparent; // group i has the parents firstparent[i] to firstparent[i + 1] - 1
    int32_t *parent;
    int32_t *base;     // first bit of each group's row; INT32_MIN before it has one
    int64_t *tree;     // size of each group's tree, its own size included
    ROW *rows;         // with columns: each group's row, itself included
    int64_t *sums;     // of the rows
    uint64_t *pending; // a bit for each group that waits for its row
};

bool newsets(SETS *sets, const GROUPS &groups) {
    const int64_t n = groups.count;
    const int64_t edges = n > 0 ? groups.last[n - 1] : 0;
    *sets = {};
    sets->column = galloclarge<int32_t>(4 * n + 1 + edges);
    sets->tree = galloclarge<int64_t>(n);
    if (sets->column == nullptr || sets->tree == nullptr)
        return false;
    sets->columnof = sets->column + n;
    sets->base = sets->column + 2 * n;
    sets->firstparent = sets->column + 3 * n;
    sets->parent = sets->column + 4 * n + 1;
    return true;
}

bool newrows(SETS *sets, int64_t n) {
    sets->rows = galloclarge<ROW>(n);
    sets->sums = galloclarge<int64_t>(n);
    sets->pending = galloclarge<uint64_t>(n / 64 + 1);
    if (sets->rows == nullptr || sets->sums == nullptr || sets->pending == nullptr)
        return false;
    std::fill_n(sets->base, n, INT32_MIN);
    std::fill_n(sets->pending, n / 64 + 1, 0);
    return true;
}

void freesets(SETS *sets) {
    grelease(sets->column);
    grelease(sets->tree);
    grelease(sets->rows);
    grelease(sets->sums);
    grelease(sets->pending);
}

// Sets the parents: joins and the groups that they reach. Descending, so that a group's parents
// are complete when it is met. The second loop moves each first[i] from its end to its start.
void findparents(const GROUPS &groups, SETS *sets) {
    int32_t *first = sets->firstparent;
    std::fill_n(first, groups.count + 1, 0);
    for (int32_t group = groups.count - 1; group >= 0; --group) {
        if (first[group] == 0 && targets(groups, group) < 2)
            continue;
        for (int32_t i = groups.first[group]; i < groups.last[group]; ++i)
            ++first[groups.target[i]];
    }
    std::partial_sum(first, first + groups.count + 1, first);
    for (int32_t group = groups.count - 1; group >= 0; --group) {
        if (first[group] == first[group + 1] && targets(groups, group) < 2)
            continue;
        for (int32_t i = groups.first[group]; i < groups.last[group]; ++i)
            sets->parent[--first[groups.target[i]]] = group;
    }
}

// Sets the trees and columns.
void findtrees(const GROUPS &groups, SETS *sets) {
    std::copy_n(groups.size, groups.count, sets->tree);
    for (int32_t group = 0; group < groups.count; ++group) {
        const int32_t parents = sets->firstparent[group + 1] - sets->firstparent[group];
        sets->columnof[group] = parents > 1 ? sets->columns : INT32_MIN;
        if (parents > 1)
            sets->column[sets->columns++] = group;
        else if (parents == 1)
            sets->tree[sets->parent[sets->firstparent[group]]] += sets->tree[group];
    }
}

bool hasbit(const ROW &row, int64_t bit) {
    return bit >= 0 && bit < ROWBITS && (row.words[bit / 64] >> bit % 64 & 1) != 0;
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

// Sets the group's row, whose first bit is `base`, and its sum. Returns the number of targets
// dropped.
int32_t makerow(GROUPS *groups, SETS *sets, int32_t group, int32_t base, const int64_t *sizes) {
    static const ROW nothing = {};
    ROW row = {};
    int32_t *from = groups->target + groups->first[group];
    const int32_t *to = groups->target + groups->last[group];
    const int32_t lowest = sets->column[base];
    int32_t known = -1;
    int32_t *kept = from;
    for (; from < to && *from >= lowest; ++from) {
        const int32_t target = *from;
        if (sets->base[target] == base) {
            if (hasbit(row, int64_t{sets->columnof[target]} - base))
                continue;
            for (int i = 0; i < ROWWORDS; ++i)
                row.words[i] |= sets->rows[target].words[i];
            known = known < 0 ? target : known;
        }
        *kept++ = target;
    }
    const auto dropped = static_cast<int32_t>(from - kept);
    if (dropped > 0) {
        std::copy(static_cast<const int32_t *>(from), to, kept);
        groups->last[group] -= dropped;
    }
    const int64_t bit = int64_t{sets->columnof[group]} - base;
    if (bit >= 0 && bit < ROWBITS)
        row.words[bit / 64] |= uint64_t{1} << bit % 64;
    sets->rows[group] = row;
    sets->base[group] = base;
    sets->sums[group] = (known >= 0 ? sets->sums[known] : 0) +
                        sumbeyond(row, known >= 0 ? sets->rows[known] : nothing, sizes);
    return dropped;
}

// Finds which of the columns from `base` on, up to ROWBITS, each group reaches, and adds their
// trees to its total. Returns the number of targets dropped.
int32_t addcolumns(GROUPS *groups, SETS *sets, int32_t base, int64_t *totals) {
    int64_t sizes[ROWBITS];
    const int32_t end = std::min(sets->columns, base + ROWBITS);
    const auto request = [&](int32_t group) {
        sets->pending[group / 64] |= uint64_t{1} << group % 64;
    };
    for (int32_t i = base; i < end; ++i) {
        sizes[i - base] = sets->tree[sets->column[i]];
        request(sets->column[i]);
    }
    int32_t dropped = 0;
    for (int32_t word = sets->column[base] / 64; word <= groups->count / 64; ++word) {
        while (sets->pending[word] != 0) {
            const int32_t group = word * 64 + std::countr_zero(sets->pending[word]);
            sets->pending[word] &= sets->pending[word] - 1;
            dropped += makerow(groups, sets, group, base, sizes);
            totals[group] += sets->sums[group];
            for (int32_t i = sets->firstparent[group]; i < sets->firstparent[group + 1]; ++i)
                request(sets->parent[i]);
        }
    }
    return dropped;
}

// Sets the totals of all groups. False when memory runs out.
bool sumgroups(GROUPS *groups, SETS *sets, int64_t *totals) {
    findparents(*groups, sets);
    findtrees(*groups, sets);
    if (sets->columns > 0 && !newrows(sets, groups->count))
        return false;
    for (int32_t group = 0; group < groups->count; ++group)
        totals[group] = sets->columnof[group] >= 0 ? 0 : sets->tree[group];
    int64_t dropped = 0;
    for (int32_t base = 0; base < sets->columns; base += ROWBITS) {
        dropped += addcolumns(groups, sets, base, totals);
        if (dropped > sets->firstparent[groups->count] / 2) {
            findparents(*groups, sets);
            dropped = 0;
        }
    }
    for (int32_t group = 0; group < groups->count; ++group) {
        if (targets(*groups, group) > 1)
            continue;
        totals[group] = groups->size[group];
        if (targets(*groups, group) == 1)
            totals[group] += totals[groups->target[groups->first[group]]];
    }
    return true;
}

bool completetotals(const GRAPH &graph, GROUPS *groups, int64_t *totals) {
    SETS sets;
    auto *grouptotals = galloclarge<int64_t>(groups->count);
    const bool whole =
        newsets(&sets, *groups) && grouptotals != nullptr && sumgroups(groups, &sets, grouptotals);
    for (int32_t file = 0; whole && file < graph.count; ++file) {
        if (groups->groupof[file] >= 0)
            totals[file] = grouptotals[groups->groupof[file]];
    }
    freesets(&sets);
    grelease(grouptotals);
    return whole;
}

bool walktotals(const GRAPH &graph, const REQUEST &request, int limit, int64_t *totals) {
    LINKWALK walk;
    if (!makewalk(&walk, &graph))
        return false;
    for (int32_t i = 0; i < request.count; ++i) {
        const int32_t file = requested(request, i);
        restartwalk(&walk);
        walkfrom(&walk, file, nullptr, limit, 0);
        totals[file] = 0;
        for (int32_t k = 0; k < walk.count; ++k)
            totals[file] += graph.files[walk.reached[k].file]->size;
    }
    freewalk(&walk);
    return true;
}

} // namespace

int64_t *linktotals(const GRAPH *graph, int limit, const int32_t *files, int32_t count) {
    const REQUEST request = {files, files != nullptr ? count : graph->count};
    GROUPS groups;
    auto *totals = galloclarge<int64_t>(graph->count);
    bool whole = newgroups(&groups, *graph) && totals != nullptr &&
                 findgroups(&groups, *graph, request) && joingroups(&groups, *graph);
    // A file is at most at level height - 1. Few walks take less time than many rows.
    if (whole && (limit < groups.height - 1 || request.count < groups.count / ROWBITS))
        whole = walktotals(*graph, request, limit, totals);
    else if (whole)
        whole = completetotals(*graph, &groups, totals);
    grelease(groups.size);
    grelease(groups.groupof);
    if (!whole)
        grelease(totals);
    return totals;
}
