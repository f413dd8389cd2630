// The entries of a search list, ordered for the comparison with a directory's names: those
// whose last component is literal are found by it, case ignored, and only the others are
// compared with every name. Private to this folder.
#pragma once

#include "search/list.h"

#include <cstdint>

struct NAMEINDEX {
    int32_t *wilds; // entries to be compared with every name, ascending
    int32_t wildCount;
    int32_t *heads;   // first entry of each bucket, or -1
    int32_t *next;    // per entry: the next one of its bucket, or -1; ascending
    uint32_t buckets; // a power of two
    int32_t keyed;    // entries in the buckets
};

// How an entry takes part; *key receives the name that a keyed entry is found by.
enum class NAMEUSE { none, keyed, wild };
using NAMEUSEFUN = NAMEUSE (*)(const void *context, const FileInfo *entry, const char **key);

// Builds the index; false when memory runs out. Either way nameindexfree releases it.
bool nameindexbuild(NAMEINDEX *index, const SearchList *list, NAMEUSEFUN use, const void *context);

// Goes through the entries that may match a name, in list order. Other entries of the same
// bucket come along.
struct NAMECURSOR {
    const NAMEINDEX *index;
    int32_t wildAt;
    int32_t keyed;
};
NAMECURSOR nameindexfind(const NAMEINDEX *index, const char *name);

// The next entry's index in the list; -1 at the end.
int32_t nameindexnext(NAMECURSOR *cursor);

void nameindexfree(NAMEINDEX *index);
