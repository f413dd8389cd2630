// The hash table: text keys to 32-bit values. Every bucket holds a search tree of the keys
// that hash to it, ordered byte by byte; the records come from a pool.
#pragma once

#include "mem/hunk.h"

#include <cstdint>

struct HASHRECORD {
    HASHRECORD *left;      // subtree of keys that compare below
    HASHRECORD *right;     // subtree of keys that compare above
    HASHRECORD *nextAdded; // the record added before this one
    const char *key;       // the caller's text
    int32_t value;
};

struct HASHTABLE {
    int32_t size;  // number of buckets, a power of two from 256 on
    int32_t count; // number of keys added
    // Directly behind this header. A bucket uses nothing but `left`, the root of its tree.
    HASHRECORD *buckets;
    HASHRECORD *allRecords; // the record added last
    MEMHUNKHEADER pool;
};

// A new table of `size` empty buckets; null when memory runs out or the size is not a power
// of two from 256 on. The caller gives it back with HASH_purge.
HASHTABLE *HASH_init(int32_t size);

// Adds the key with its value. A key that is there already keeps its old value, and nothing
// is added when memory runs out. The key text is not copied: it must outlive the table.
void HASH_add(HASHTABLE *table, const char *key, int32_t value);

// The value stored with the key, or -1 when the key is absent (a stored -1 looks the same).
int32_t HASH_check(const HASHTABLE *table, const char *key);

// The same for a key that is the first `length` bytes of a text without terminator.
int32_t HASH_check(const HASHTABLE *table, const char *key, int64_t length);

// Releases the table; null is ignored. The key texts are not touched.
void HASH_purge(HASHTABLE *table);
