#include "report/graph.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr int prefetchDistance = 16;

bool addfile(GRAPH *graph, int32_t *capacity, _tagfile *file) {
    if (!growarray(graph->files, graph->count, *capacity))
        return false;
    file->number = graph->count;
    graph->files[graph->count++] = file;
    return true;
}

// Whether the symbol has a file that is not in the graph.
bool isforeign(const GRAPH *graph, const _tagsymlist *node) {
    const _tagfile *file = node->symbol->file;
    return file != nullptr && filenumber(graph, file) < 0;
}

// Adds the files that are in no list, in the order of their first reference.
bool addforeign(GRAPH *graph, int32_t *capacity) {
    for (int32_t i = 0; i < graph->count; ++i) {
        const _tagsymlist *node = graph->files[i]->defines;
        if (node != nullptr && isforeign(graph, node) &&
            !addfile(graph, capacity, node->symbol->file))
            return false;
        for (node = graph->files[i]->refers; node != nullptr; node = node->next) {
            if (isforeign(graph, node) && !addfile(graph, capacity, node->symbol->file))
                return false;
        }
    }
    return true;
}

int64_t countnodes(const GRAPH *graph) {
    int64_t nodes = 0;
    for (int32_t i = 0; i < graph->count; ++i) {
        for (const _tagsymlist *node = graph->files[i]->refers; node != nullptr; node = node->next)
            ++nodes;
    }
    return nodes;
}

// Begins to count references. Sets firstref to the file's number, which spares addrefers a read.
void clearcounts(_tagsymbol **symbols, int64_t count) {
    for (int64_t i = 0; i < count; ++i) {
        __builtin_prefetch(symbols[std::min(i + 2 * prefetchDistance, count - 1)], 1);
        const _tagfile *file = symbols[std::min(i + prefetchDistance, count - 1)]->file;
        const auto address = reinterpret_cast<uintptr_t>(file); // perhaps null
        __builtin_prefetch(reinterpret_cast<const void *>(address + offsetof(_tagfile, number)));
        symbols[i]->nrefers = 0;
        symbols[i]->firstref = symbols[i]->file != nullptr ? symbols[i]->file->number : -1;
    }
}

bool isnumber(const GRAPH *graph, int32_t number, const _tagfile *file) {
    return static_cast<uint32_t>(number) < static_cast<uint32_t>(graph->count) &&
           graph->files[number] == file;
}

// Appends the file's references to those of the files before it. `seen` has for each file the last
// file that refers to it, plus 1. False when a file is foreign. The first definition is read only
// if symbols are requested: it is seldom in the cache.
bool addrefers(GRAPH *graph, const _tagfile *file, int32_t *seen, int32_t count) {
    int32_t used = graph->first[file->number];
    bool isWhole =
        graph->symbol == nullptr || file->defines == nullptr || !isforeign(graph, file->defines);
    const _tagsymlist *ahead = file->refers;
    for (int i = 0; i < prefetchDistance && ahead != nullptr; ++i, ahead = ahead->next)
        __builtin_prefetch(&ahead->symbol->nrefers);
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
        if (ahead != nullptr) {
            __builtin_prefetch(&ahead->symbol->nrefers);
            ahead = ahead->next;
        }
        node->symbol->nrefers += count;
        const _tagfile *target = node->symbol->file;
        if (target == nullptr)
            continue;
        int32_t number = node->symbol->firstref;
        if (!isnumber(graph, number, target))
            number = filenumber(graph, target);
        isWhole = isWhole && number >= 0;
        if (number < 0 || seen[number] == file->number + 1)
            continue;
        seen[number] = file->number + 1;
        graph->target[used] = number;
        if (graph->symbol != nullptr)
            graph->symbol[used] = node->symbol;
        ++used;
    }
    graph->first[file->number + 1] = used;
    return isWhole;
}

// Adds `count` for each reference to its symbol's nrefers. Sets *isWhole to false when a file is
// foreign. False when memory runs out.
bool addallrefers(GRAPH *graph, bool symbols, int32_t count, bool *isWhole) {
    const int64_t nodes = countnodes(graph);
    graph->first = galloclarge<int32_t>(int64_t{graph->count} + 1);
    graph->target = galloclarge<int32_t>(nodes);
    graph->symbol = symbols ? galloclarge<_tagsymbol *>(nodes) : nullptr;
    auto *seen = galloclarge<int32_t>(graph->count);
    const bool made = seen != nullptr && graph->first != nullptr && graph->target != nullptr &&
                      (!symbols || graph->symbol != nullptr);
    if (made) {
        std::fill_n(seen, graph->count, 0);
        graph->first[0] = 0;
    }
    for (int32_t i = 0; i < graph->count && made; ++i)
        *isWhole = addrefers(graph, graph->files[i], seen, count) && *isWhole;
    grelease(seen);
    return made;
}

void freerefers(GRAPH *graph) {
    grelease(graph->first);
    grelease(graph->target);
    grelease(graph->symbol);
}

} // namespace

bool makegraph(GRAPH *graph, const TVKINFO *info, bool symbols, _tagsymbol **counted,
               int64_t count) {
    int32_t capacity = 0;
    bool made = true;
    bool isWhole = true;
    *graph = {};
    for (_tagfile *file = info->files; file != nullptr && made; file = file->next)
        made = addfile(graph, &capacity, file);
    clearcounts(counted, count);
    made = made && addallrefers(graph, symbols, count > 0 ? 1 : 0, &isWhole);
    // Only a caller's store has foreign files. Looking for them first would be slower.
    if (made && !isWhole) {
        freerefers(graph);
        made = addforeign(graph, &capacity) && addallrefers(graph, symbols, 0, &isWhole);
    }
    if (!made)
        freegraph(graph);
    return made;
}

int32_t filenumber(const GRAPH *graph, const _tagfile *file) {
    return file != nullptr && isnumber(graph, file->number, file) ? file->number : -1;
}

void freegraph(GRAPH *graph) {
    grelease(graph->files);
    freerefers(graph);
    *graph = {};
}

bool makewalk(LINKWALK *walk, const GRAPH *graph) {
    *walk = {graph, galloclarge<REACHED>(graph->count), 0,
             0,     galloclarge<int32_t>(graph->count), galloclarge<LINKFRAME>(graph->count)};
    if (walk->reached == nullptr || walk->marks == nullptr || walk->frames == nullptr) {
        freewalk(walk);
        return false;
    }
    memset(walk->marks, 0, static_cast<size_t>(graph->count) * sizeof *walk->marks);
    return true;
}

void freewalk(LINKWALK *walk) {
    grelease(walk->reached);
    grelease(walk->marks);
    grelease(walk->frames);
}

void restartwalk(LINKWALK *walk) {
    walk->count = 0;
    if (walk->mark == INT32_MAX) {
        walk->mark = 0;
        memset(walk->marks, 0, static_cast<size_t>(walk->graph->count) * sizeof *walk->marks);
    }
    ++walk->mark;
}

void walkfrom(LINKWALK *walk, int32_t file, const _tagsymbol *symbol, int limit, int level) {
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
