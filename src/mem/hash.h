// The hash table: text keys to 32-bit values. Every bucket holds a search tree of its keys,
// ordered byte by byte; a pool holds the records.
#pragma once

#include "mem/hunk.h"

#include <cstdint>

struct HASHRECORD {
    HASHRECORD *left;      // subtree of smaller keys
    HASHRECORD *right;     // subtree of larger keys
    HASHRECORD *nextAdded; // the record added before this one
    const char *key;       // owned by the caller
    int32_t value;
};

struct HASHTABLE {
    int32_t size;           // number of buckets, a power of two, at least 256
    int32_t count;          // number of keys added
    HASHRECORD *buckets;    // directly after this header; only `left`, a tree's root, is used
    HASHRECORD *allRecords; // the record added last
    MEMHUNKHEADER pool;
};

// Returns a new table of `size` empty buckets, to be freed with HASH_purge. Returns null when
// memory runs out or the size is not a power of two of at least 256.
HASHTABLE *HASH_init(int32_t size);

// Adds the key with its value. A key already present keeps its old value. Adds nothing when
// memory runs out. The key is not copied and must outlive the table.
void HASH_add(HASHTABLE *table, const char *key, int32_t value);

// Returns the value stored with the key, or -1 when it is absent. A stored -1 looks absent.
int32_t HASH_check(const HASHTABLE *table, const char *key);

// Looks up a key that is the first `length` bytes of an unterminated text.
int32_t HASH_check(const HASHTABLE *table, const char *key, int64_t length);

// Frees the table but not its keys. Null is allowed.
void HASH_purge(HASHTABLE *table);
