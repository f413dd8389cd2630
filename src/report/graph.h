// The object files of a store and which of them each refers to, as arrays of numbers: many
// closures are found in them several times faster than in the store's lists. A graph shows the
// store as it was when the graph was made.
#pragma once

#include "symbols/store.h"

// References of one file to the same other file lead nowhere new, so of those only the first
// is kept; the order is that of the refers lists. Files are numbered as in the store's list,
// then come files that are in no list: those that define a symbol which a numbered file refers
// to or defines first.
struct GRAPH {
    int32_t count; // of files
    _tagfile **files;
    int32_t *first;      // of file i the references first[i] to first[i + 1] - 1
    int32_t *target;     // of each reference
    _tagsymbol **symbol; // of each reference; null unless asked for
};

// Fills in the graph of the store; `symbols` asks for the references' symbols. False when
// memory runs out; the graph is then empty.
bool makegraph(GRAPH *graph, const TVKINFO *info, bool symbols);

void freegraph(GRAPH *graph);

// The file's number, or -1 when the graph does not hold it; null is allowed.
int32_t filenumber(const GRAPH *graph, const _tagfile *file);

// A file of a closure: its number, the level at which it was first reached, and the symbol
// through which that was.
struct REACHED {
    int32_t file;
    int32_t level;
    const _tagsymbol *symbol;
};

// References of a file that is being followed.
struct LINKFRAME {
    int32_t next, end;
};

// A closure being found. Needs no memory after it was made.
struct LINKWALK {
    const GRAPH *graph;
    REACHED *reached; // `count` files in the order in which they were reached
    int32_t count;
    int32_t mark;      // private: stands in `marks` for the files that were reached
    int32_t *marks;    // private
    LINKFRAME *frames; // private
};

bool makewalk(LINKWALK *walk, const GRAPH *graph);
void freewalk(LINKWALK *walk);

// Begins a new closure, without files.
void restartwalk(LINKWALK *walk);

// Adds to the closure what symneedfiles would add to its list for a symbol of this file (null
// when it does not matter) that is reached at `level`.
void walkfrom(LINKWALK *walk, int32_t file, const _tagsymbol *symbol, int limit, int level);
