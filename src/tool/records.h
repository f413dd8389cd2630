// The single records of a symbol store: how they are made and given back. What is public of them
// is in store.h.
#pragma once

#include "mem/arena.h"
#include "tool/options.h"
#include "tool/store.h"

// Takes the underscores off both ends of a name, unless OPTunderscores is set. It is called for
// every line of a symbol file.
inline void symstrip(const char **name, size_t *length) {
    if (OPTunderscores != 0)
        return;
    for (; *length > 0 && **name == '_'; ++*name)
        --*length;
    while (*length > 0 && (*name)[*length - 1] == '_')
        --*length;
}

// Gives back those of the blocks that were obtained, for whoever needs all of them.
void discardblocks(void *a, void *b, void *c = nullptr);

// Give back a store's list of files with their nodes and texts, and a chain of symbols, but for
// what the arena holds, which is released as a whole.
void releasefiles(const ARENA *arena, _tagfile *file);
void releasesymbols(const ARENA *arena, _tagsymbol *symbol);
