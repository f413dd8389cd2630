// The entries of a search list, indexed for comparison with the names in a directory. An entry
// whose last component is literal is found by that name, case ignored. The others are compared
// with every name. Private to this folder.
#pragma once

#include <cstdint>

struct NAMEINDEX {
    int32_t *heads;   // first entry of each bucket, then of the entries without a key; or -1
    int32_t *next;    // per entry: the next one of its chain, or -1
    uint32_t buckets; // a power of two
    int32_t keyed;    // entries with a key
};

// Makes an empty index for a list of `count` entries. False when memory runs out; the index must
// be freed in both cases.
bool nameindexcreate(NAMEINDEX *index, int32_t count);

// Adds an entry under the last component of `key`, or without a key when that is null. Entries
// must be added in descending order.
void nameindexadd(NAMEINDEX *index, int32_t entry, const char *key);

bool nameindexempty(const NAMEINDEX *index);

// Iterates in list order over the entries that may match a name. Others of its bucket are
// included.
struct NAMECURSOR {
    const NAMEINDEX *index;
    int32_t keyed;
    int32_t unkeyed;
};
NAMECURSOR nameindexfind(const NAMEINDEX *index, const char *name);

// The next entry; -1 at the end.
int32_t nameindexnext(NAMECURSOR *cursor);

void nameindexfree(NAMEINDEX *index);
