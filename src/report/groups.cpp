#include "report/groups.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <algorithm>
#include <functional>

namespace {

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
    int32_t *visit; // number in the order of visits, from 1; 0 before, INT32_MAX in a closed group
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
        t->visit[member] = INT32_MAX;
        groups->groupof[member] = groups->count;
        groups->members[used++] = member;
    }
    groups->firstmember[++groups->count] = used;
}

void followall(TARJAN *t, GROUPS *groups, const GRAPH &graph) {
    while (t->depth > 0) {
        const int32_t file = t->path[t->depth - 1];
        const int32_t end = graph.first[file + 1];
        int32_t next = t->next[file];
        int32_t low = t->low[file];
        for (; next < end && t->visit[graph.target[next]] != 0; ++next)
            low = std::min(low, t->visit[graph.target[next]]);
        t->low[file] = low;
        t->next[file] = next + 1;
        if (next < end)
            enter(t, graph, graph.target[next]);
        else
            leave(t, groups, file);
    }
}

// Finds the groups that the files reach.
bool visitall(GROUPS *groups, const GRAPH &graph, const int32_t *files, int32_t count) {
    const int32_t n = graph.count;
    auto *memory = galloclarge<int32_t>(int64_t{5} * n);
    if (memory == nullptr)
        return false;
    TARJAN t = {memory, memory + n, memory + n * 2L, memory + n * 3L, memory + n * 4L, 0, 0, 0};
    std::fill_n(t.visit, n, 0);
    std::fill_n(groups->groupof, n, -1);
    groups->firstmember[0] = 0;
    for (int32_t i = 0; i < count; ++i) {
        if (t.visit[files[i]] == 0)
            enter(&t, graph, files[i]);
        followall(&t, groups, graph);
    }
    gfree(memory);
    return true;
}

// Drops targets that another one reaches as far as `low` shows it. Sets low[group] so that the
// group reaches every group from there to itself.
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
            __builtin_prefetch(&graph.files[members[std::min(i + 8, count - 1)]]->size);
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

} // namespace

bool findgroups(GROUPS *groups, const GRAPH &graph, const int32_t *files, int32_t count) {
    if (newgroups(groups, graph) && visitall(groups, graph, files, count) &&
        joingroups(groups, graph))
        return true;
    freegroups(groups);
    return false;
}

void freegroups(GROUPS *groups) {
    grelease(groups->size);
    grelease(groups->groupof);
}
