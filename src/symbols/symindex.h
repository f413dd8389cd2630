// The tables of cinew and their indexes. An index finds a symbol by its exact name in one step.
#pragma once

#include "mem/arena.h"
#include "symbols/options.h"
#include "symbols/store.h"

#include <bit>
#include <cstring>
#include <string_view>

// Open addressing, a power of two of slots, at most three quarters of them used. A slot is a
// symbol's address, which has 48 bits, under the upper 16 bits of its hash; a free slot is 0.
struct SYMINDEX {
    uint64_t *slots; // a block of galloc
    uint64_t mask;   // number of slots - 1
    uint64_t used;
    uint64_t key[2]; // of the hash, random: a file cannot aim its names at one slot
};

constexpr int ADDRESSBITS = 48;

inline _tagsymbol *slotsymbol(uint64_t slot) {
    return reinterpret_cast<_tagsymbol *>(slot & ((uint64_t{1} << ADDRESSBITS) - 1));
}

// The public buckets of cinew and their index. heads[i] is bucket i's head after the last insert;
// a bucket with another head was changed by a caller, and its chain is searched.
struct SYMTABLE {
    _tagsymlist buckets[SYMBUCKETS];
    _tagsymbol *heads[SYMBUCKETS];
    SYMTABLE *previous; // made before this one
    ARENA nodes;        // of lists, made by the loader and freed by tvkfree
    ARENA records;      // the loader's other records and their texts, dense: read at random
    SYMINDEX index;
    int64_t leading;  // names that begin with an underscore
    int64_t trailing; // names that end with one
};

// One name in a line of a symbol file.
struct SYMENTRY {
    std::string_view name; // stripped
    SYMTYPE type;
    SYMSCOPE scope;
    int32_t size;
    _tagsymbol *symbol; // the result of symenterall
    uint64_t hash;      // of the name
};

// Does symnew and symadd for `count` entries, in order, with records in the arena, if no caller has
// changed a bucket. Cache misses overlap. Sets each entry's symbol; false when memory runs out.
bool symenterall(SYMTABLE *table, SYMENTRY *entries, int count);

// Makes an empty index with a new key. Returns false when memory runs out.
bool symindexmake(SYMINDEX *index);

// Makes the index have at least `capacity` slots. Returns false when memory runs out, with nothing
// changed.
bool symindexreserve(SYMINDEX *index, int64_t capacity);

// Returns the symbol of that name; null when there is none. `hash` is the name's.
_tagsymbol *symindexfind(const SYMINDEX *index, std::string_view name, uint64_t hash);

// Adds a symbol whose name is not in the index. Returns false when memory runs out.
bool symindexadd(SYMINDEX *index, _tagsymbol *symbol, uint64_t hash);

// Returns the number of the first slot from `i` on that is free or has this hash's upper bits.
inline uint64_t nextslot(const SYMINDEX *index, uint64_t i, uint64_t hash) {
    i &= index->mask;
    while (index->slots[i] != 0 && (index->slots[i] ^ hash) >> ADDRESSBITS != 0)
        i = (i + 1) & index->mask;
    return i;
}

// Returns the eight bytes at `text`, the first one lowest on every machine.
inline uint64_t eightbytes(const char *text) {
    uint64_t word = 0;
    memcpy(&word, text, 8);
    return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
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

// Compares long names without a call, which would take a tenth of a load.
inline bool symisnamed(const _tagsymbol *symbol, std::string_view name) {
    const size_t length = name.size();
    if (symbol->length != length || length < 8)
        return name == symbol->name;
    const char *text = symbol->text;
    const auto differ = [&](size_t i) {
        return eightbytes(text + i) ^ eightbytes(name.data() + i);
    };
    uint64_t different = differ(length - 8);
    for (size_t i = 0; i + 8 < length; i += 8)
        different |= differ(i);
    return different == 0;
}

// Removes the underscores at both ends, unless OPTunderscores is set.
inline std::string_view symstripped(std::string_view name) {
    if (OPTunderscores != 0)
        return name;
    while (name.starts_with('_'))
        name.remove_prefix(1);
    while (name.ends_with('_'))
        name.remove_suffix(1);
    return name;
}
