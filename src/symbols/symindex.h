// The index of a symbol table: finds a symbol by its exact name in one step.
#pragma once

#include "symbols/store.h"

struct INDEXSLOT {
    uint64_t hash;
    _tagsymbol *symbol; // null in a free slot
};

// Open addressing, a power of two of slots, at most three quarters of them used.
struct SYMINDEX {
    INDEXSLOT *slots; // a block of galloc
    uint64_t mask;    // number of slots - 1
    uint64_t used;
    uint64_t key[2]; // of the hash, random: a file cannot aim its names at one slot
};

// Makes an empty index with a new key. Returns false when memory runs out.
bool symindexmake(SYMINDEX *index);

// Returns the symbol of that name; null when there is none. `hash` is the name's.
_tagsymbol *symindexfind(const SYMINDEX *index, std::string_view name, uint64_t hash);

// Adds a symbol whose name is not in the index. Returns false when memory runs out.
bool symindexadd(SYMINDEX *index, _tagsymbol *symbol, uint64_t hash);

// Prefetches the record that symindexfind will probably read.
inline void symindexprefetch(const SYMINDEX *index, uint64_t hash) {
    uint64_t i = hash & index->mask;
    while (index->slots[i].symbol != nullptr && index->slots[i].hash != hash)
        i = (i + 1) & index->mask;
    const auto record = reinterpret_cast<uintptr_t>(index->slots[i].symbol);
    __builtin_prefetch(reinterpret_cast<const void *>(record));
    __builtin_prefetch(reinterpret_cast<const void *>(record + 63)); // as a number: it may be null
}

inline uint64_t multiplied(uint64_t a, uint64_t b) {
    const auto product = static_cast<unsigned __int128>(a) * b;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

// Hashes a name without zero bytes. `padded`: the 16 bytes after it are readable and need no copy.
inline uint64_t symindexhash(const SYMINDEX *index, std::string_view name, bool padded) {
    static constexpr char masks[32] = {-1, -1, -1, -1, -1, -1, -1, -1,
                                       -1, -1, -1, -1, -1, -1, -1, -1};
    const char *text = name.data();
    size_t left = name.size();
    uint64_t hash = index->key[0];
    for (; left > 16; left -= 16, text += 16)
        hash = multiplied(hash ^ eightbytes(text), index->key[1] ^ eightbytes(text + 8));
    char copy[16] = {};
    if (!padded)
        text = static_cast<const char *>(memcpy(copy, text, left));
    const char *mask = masks + 16 - left;
    return multiplied(hash ^ (eightbytes(text) & eightbytes(mask)),
                      index->key[1] ^ (eightbytes(text + 8) & eightbytes(mask + 8)));
}
