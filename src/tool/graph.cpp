#include "tool/graph.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <cstring>

namespace {

constexpr int prefetchDistance = 8;

template <typename T> void freearray(T **array) {
    if (*array != nullptr)
        gfree(*array);
    *array = nullptr;
}

int64_t countnodes(const TVKINFO *info, int64_t *files) {
    int64_t nodes = 0;
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        ++*files;
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
            ++nodes;
    }
    return nodes;
}

// Puts the file's references behind those of the files before it. `seen` holds for each file
// the last one that refers to it, plus 1.
void addrefers(GRAPH *graph, const _tagfile *file, int32_t *seen) {
    int32_t used = graph->first[file->number];
    const _tagsymlist *ahead = file->refers;
    for (int i = 0; i < prefetchDistance && ahead != nullptr; ++i, ahead = ahead->next)
        __builtin_prefetch(ahead->symbol);
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
        if (ahead != nullptr) {
            __builtin_prefetch(ahead->symbol);
            ahead = ahead->next;
        }
        const _tagfile *target = node->symbol->file;
        if (target == nullptr || seen[target->number] == file->number + 1)
            continue;
        seen[target->number] = file->number + 1;
        graph->target[used] = target->number;
        if (graph->symbol != nullptr)
            graph->symbol[used] = node->symbol;
        ++used;
    }
    graph->first[file->number + 1] = used;
}

} // namespace

bool makegraph(GRAPH *graph, const TVKINFO *info, bool symbols) {
    int64_t files = 0;
    const int64_t nodes = countnodes(info, &files);
    *graph = {};
    auto *seen = galloclarge<int32_t>(files);
    graph->files = galloclarge<_tagfile *>(files);
    graph->first = galloclarge<int32_t>(files + 1);
    graph->target = galloclarge<int32_t>(nodes);
    graph->symbol = symbols ? galloclarge<_tagsymbol *>(nodes) : nullptr;
    const bool whole = seen != nullptr && graph->files != nullptr && graph->first != nullptr &&
                       graph->target != nullptr && (!symbols || graph->symbol != nullptr);
    if (whole) {
        for (_tagfile *file = info->files; file != nullptr; file = file->next) {
            file->number = graph->count;
            graph->files[graph->count++] = file;
        }
        memset(seen, 0, static_cast<size_t>(files) * sizeof *seen);
        graph->first[0] = 0;
        for (int32_t i = 0; i < graph->count; ++i)
            addrefers(graph, graph->files[i], seen);
    } else {
        freegraph(graph);
    }
    freearray(&seen);
    return whole;
}

void freegraph(GRAPH *graph) {
    freearray(&graph->files);
    freearray(&graph->first);
    freearray(&graph->target);
    freearray(&graph->symbol);
    *graph = {};
}

bool makewalk(WALK *walk, const GRAPH *graph) {
    *walk = {graph, galloclarge<REACHED>(graph->count), 0,
             0,     galloclarge<int32_t>(graph->count), galloclarge<WALKFRAME>(graph->count)};
    if (walk->reached == nullptr || walk->marks == nullptr || walk->frames == nullptr) {
        freewalk(walk);
        return false;
    }
    memset(walk->marks, 0, static_cast<size_t>(graph->count) * sizeof *walk->marks);
    return true;
}

void freewalk(WALK *walk) {
    freearray(&walk->reached);
    freearray(&walk->marks);
    freearray(&walk->frames);
}

void restartwalk(WALK *walk) {
    walk->count = 0;
    if (walk->mark == INT32_MAX) {
        walk->mark = 0;
        memset(walk->marks, 0, static_cast<size_t>(walk->graph->count) * sizeof *walk->marks);
    }
    ++walk->mark;
}

void walkfrom(WALK *walk, int32_t file, const _tagsymbol *symbol, int limit, int level) {
    const GRAPH &graph = *walk->graph;
    const int32_t mark = walk->mark;
    int32_t *marks = walk->marks;
    if (marks[file] == mark)
        return;
    marks[file] = mark;
    walk->reached[walk->count++] = {file, level, symbol};
    int depth = -1;
    if (level < limit)
        walk->frames[++depth] = {graph.first[file], graph.first[file + 1]};
    while (depth >= 0) {
        const int32_t end = walk->frames[depth].end;
        int32_t next = walk->frames[depth].next;
        while (next < end && marks[graph.target[next]] == mark)
            ++next;
        if (next == end) {
            --depth;
            continue;
        }
        walk->frames[depth].next = next + 1;
        const int32_t target = graph.target[next];
        const int below = level + depth + 1;
        marks[target] = mark;
        walk->reached[walk->count++] = {target, below,
                                        graph.symbol != nullptr ? graph.symbol[next] : nullptr};
        if (below < limit)
            walk->frames[++depth] = {graph.first[target], graph.first[target + 1]};
    }
}
