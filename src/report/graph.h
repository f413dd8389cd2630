// The object files of a store and the references between them, as arrays of numbers. Many closures
// are found in them several times faster than in the store's lists. Changing the store makes its
// graph invalid.
#pragma once

#include "symbols/store.h"

// Of one file's references to the same other file only the first is kept, in the order of the
// refers lists. Files are numbered as in the store's list. After them come files that are in no
// list but define what a numbered file refers to or, if `symbols` is true, its first definition.
struct GRAPH {
    int32_t count; // of files
    _tagfile **files;
    int32_t *first;      // file i has the references first[i] to first[i + 1] - 1
    int32_t *target;     // each reference's file
    _tagsymbol **symbol; // each reference's symbol; null when not requested
};

// Makes the graph of a store, for freegraph; `symbols` requests the references' symbols. It also
// sets nrefers and firstref of the `count` symbols of `counted`, all of the store or none. False,
// with an empty graph, when memory runs out.
bool makegraph(GRAPH *graph, const TVKINFO *info, bool symbols, _tagsymbol **counted,
               int64_t count);

void freegraph(GRAPH *graph);

// Returns the file's number; -1 for null or a file that is not in the graph.
int32_t filenumber(const GRAPH *graph, const _tagfile *file);

// A file of a closure, as in _tagfilelist.
struct REACHED {
    int32_t file; // number
    int32_t level;
    const _tagsymbol *symbol;
};

// The references of a file that are not followed yet.
struct LINKFRAME {
    int32_t next, end;
};

// A closure in arrays. Only makewalk allocates memory.
struct LINKWALK {
    const GRAPH *graph;
    REACHED *reached; // `count` files in the order of symneedfiles
    int32_t count;
    int32_t mark;      // private: marks[i] has this value when file i is reached
    int32_t *marks;    // private
    LINKFRAME *frames; // private
};

// Allocates a walk of the graph, for freewalk. False, with nothing allocated, when memory runs out.
bool makewalk(LINKWALK *walk, const GRAPH *graph);
void freewalk(LINKWALK *walk);

// Starts a new, empty closure: call it before the first one, too.
void restartwalk(LINKWALK *walk);

// Adds the files that symneedfiles would append for a symbol of this file, reached at `level`.
// `symbol` may be null when the caller does not need it.
void walkfrom(LINKWALK *walk, int32_t file, const _tagsymbol *symbol, int limit, int level);
