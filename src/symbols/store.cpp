#include "symbols/store.h"

#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "symbols/records.h"

#include <cstring>

namespace {

constexpr size_t VARIANTSIZE = 256; // room for a name with an underscore added

// The index: open addressing, a power of two of slots, at most three quarters of them used.
struct INDEXSLOT {
    uint64_t hash;
    _tagsymbol *symbol; // null in a free slot
};

// The public buckets of cinew and their index. heads[i] is bucket i's head after the last insert;
// a bucket with another head was changed by a caller, and its chain is searched.
struct SYMTABLE {
    _tagsymlist buckets[SYMBUCKETS];
    _tagsymbol *heads[SYMBUCKETS];
    SYMTABLE *previous; // made before this one
    ARENA arena;        // of the records that do not come one by one
    INDEXSLOT *slots;
    uint64_t capacity;
    uint64_t used;
    int64_t leading;  // names that begin with an underscore
    int64_t trailing; // names that end with one
};
SYMTABLE *tables = nullptr;

constexpr uint64_t firstCapacity = 1024;

// A name as it is looked up: where it is, how long, and its hash.
struct NAME {
    const char *text;
    size_t length;
    uint64_t hash;
};

uint64_t mix(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    return hash ^ hash >> 29;
}

uint64_t endhash(uint64_t hash, uint64_t lastWord) {
    hash = mix(hash, lastWord);
    return mix(hash, hash >> 32);
}

NAME hashedname(const char *text, size_t length) {
    uint64_t hash = length;
    size_t i = 0;
    for (; i + 8 <= length; i += 8)
        hash = mix(hash, eightbytes(text + i));
    char rest[8] = {};
    memcpy(rest, text + i, length - i);
    return {text, length, endhash(hash, eightbytes(rest))};
}

// The same hash for a text with 8 readable bytes after it, which need not be copied.
uint64_t fasthash(const char *text, size_t length) {
    uint64_t hash = length;
    size_t i = 0;
    for (; i + 8 <= length; i += 8)
        hash = mix(hash, eightbytes(text + i));
    return endhash(hash, eightbytes(text + i) & ((uint64_t{1} << 8 * (length - i)) - 1));
}

// The table of cinew with these buckets; null for a caller's own buckets.
SYMTABLE *tableof(const _tagsymlist *buckets) {
    for (SYMTABLE *table = tables; table != nullptr; table = table->previous) {
        if (table->buckets == buckets)
            return table;
    }
    return nullptr;
}

bool isnamed(const _tagsymbol *symbol, const NAME &name) {
    return static_cast<size_t>(symbol->length) == name.length &&
           memcmp(symbol->name, name.text, name.length) == 0;
}

_tagsymbol *indexfind(const SYMTABLE *table, const NAME &name) {
    const uint64_t mask = table->capacity - 1;
    for (uint64_t i = name.hash & mask; table->slots[i].symbol != nullptr; i = (i + 1) & mask) {
        const INDEXSLOT &slot = table->slots[i];
        if (slot.hash == name.hash && isnamed(slot.symbol, name))
            return slot.symbol;
    }
    return nullptr;
}

void indexput(INDEXSLOT *slots, uint64_t capacity, uint64_t hash, _tagsymbol *symbol) {
    uint64_t i = hash & (capacity - 1);
    while (slots[i].symbol != nullptr)
        i = (i + 1) & (capacity - 1);
    slots[i] = {hash, symbol};
}

INDEXSLOT *newslots(uint64_t capacity) {
    auto *slots = gallocarray<INDEXSLOT>(static_cast<int64_t>(capacity));
    if (slots == nullptr)
        return nullptr;
    adviseblock(slots, capacity * sizeof(INDEXSLOT));
    memset(slots, 0, capacity * sizeof(INDEXSLOT));
    return slots;
}

bool reserveslot(SYMTABLE *table) {
    if (table->used * 4 < table->capacity * 3)
        return true;
    const uint64_t capacity = table->capacity * 2;
    INDEXSLOT *larger = newslots(capacity);
    if (larger == nullptr)
        return false;
    for (uint64_t i = 0; i < table->capacity; ++i) {
        if (table->slots[i].symbol != nullptr)
            indexput(larger, capacity, table->slots[i].hash, table->slots[i].symbol);
    }
    gfree(table->slots);
    table->slots = larger;
    table->capacity = capacity;
    return true;
}

int hashof(const char *name, size_t length) {
    uint32_t hash = 0;
    for (size_t i = length > 4 ? length - 4 : 0; i < length; ++i)
        hash = hash * 4 + static_cast<uint32_t>(charvalue(name[i]));
    return static_cast<int>(hash & (SYMBUCKETS - 1));
}

_tagsymbol *chainfind(const _tagsymlist *buckets, const char *name, int n) {
    _tagsymbol *symbol = buckets[symhash(name)].symbol;
    for (; symbol != nullptr; symbol = symbol->next) {
        if (strcmp(symbol->name, name) == 0 && --n == 0)
            return symbol;
    }
    return nullptr;
}

// The name with "_" added before or after it, when any stored name has one there.
_tagsymbol *findvariant(const SYMTABLE *table, const NAME &name, bool front) {
    if ((front ? table->leading : table->trailing) == 0 || name.length + 2 > VARIANTSIZE)
        return nullptr;
    char variant[VARIANTSIZE];
    memcpy(variant + (front ? 1 : 0), name.text, name.length);
    variant[front ? 0 : name.length] = '_';
    return indexfind(table, hashedname(variant, name.length + 1));
}

_tagsymbol *find(const SYMTABLE *table, const NAME &name) {
    _tagsymbol *symbol = indexfind(table, name);
    if (symbol == nullptr)
        symbol = findvariant(table, name, true);
    if (symbol == nullptr)
        symbol = findvariant(table, name, false);
    return symbol;
}

// The symbol of that name or of one of its two variants.
_tagsymbol *finduncut(const _tagsymlist *table, const char *name) {
    _tagsymbol *symbol = symfindnth(table, name, 1);
    const size_t length = strlen(name);
    if (symbol != nullptr || length + 2 > VARIANTSIZE)
        return symbol;
    char variant[VARIANTSIZE] = "_";
    appendtext(variant, name, sizeof variant);
    symbol = symfindnth(table, variant, 1);
    if (symbol != nullptr)
        return symbol;
    copytext(variant, name, sizeof variant);
    appendtext(variant, "_", sizeof variant);
    return symfindnth(table, variant, 1);
}

void merge(_tagsymbol *symbol, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    if (symbol->type == TYPE_UNKNOWN)
        symbol->type = type;
    if (symbol->scope == SCOPE_UNKNOWN)
        symbol->scope = scope;
    if (symbol->size == 0)
        symbol->size = size;
}

// Puts the symbol into its bucket, and into the index when the table has one.
bool insert(_tagsymlist *buckets, SYMTABLE *table, _tagsymbol *symbol, uint64_t hash) {
    if (table != nullptr && !reserveslot(table))
        return false;
    const size_t length = static_cast<size_t>(symbol->length);
    const int number = hashof(symbol->name, length);
    _tagsymlist *bucket = &buckets[number];
    if (table != nullptr) {
        indexput(table->slots, table->capacity, hash, symbol);
        ++table->used;
        table->leading += symbol->name[0] == '_' ? 1 : 0;
        table->trailing += length > 0 && symbol->name[length - 1] == '_' ? 1 : 0;
        if (table->heads[number] == bucket->symbol)
            table->heads[number] = symbol;
    }
    symbol->next = bucket->symbol;
    bucket->symbol = symbol;
    return true;
}

// The symbol that the entry's slot leads to by its hash; the name may still differ.
_tagsymbol *candidate(const SYMTABLE *table, uint64_t hash) {
    const uint64_t mask = table->capacity - 1;
    uint64_t i = hash & mask;
    while (table->slots[i].symbol != nullptr && table->slots[i].hash != hash)
        i = (i + 1) & mask;
    return table->slots[i].symbol;
}

_tagsymbol *newsymbol(ARENA *arena, const SYMENTRY &entry) {
    const size_t length = static_cast<size_t>(entry.length);
    // Name and record are adjacent for cache locality.
    auto *symbol = static_cast<_tagsymbol *>(arenaalloc(arena, sizeof(_tagsymbol) + length + 1));
    if (symbol == nullptr)
        return nullptr;
    char *copy = reinterpret_cast<char *>(symbol + 1);
    memcpy(copy, entry.name, length);
    copy[length] = 0;
    *symbol = {copy, entry.type, entry.scope, entry.size, nullptr, nullptr, entry.length, 0, 0};
    return symbol;
}

} // namespace

TVKINFO *cinew() {
    auto *info = gallocarray<TVKINFO>(1);
    auto *table = gallocarray<SYMTABLE>(1);
    INDEXSLOT *slots = newslots(firstCapacity);
    if (info == nullptr || table == nullptr || slots == nullptr) {
        discardblocks(info, table, slots);
        return nullptr;
    }
    *table = {};
    table->slots = slots;
    table->capacity = firstCapacity;
    table->previous = tables;
    tables = table;
    *info = {table->buckets, nullptr};
    return info;
}

void tvkfree(TVKINFO *info) {
    SYMTABLE *table = info != nullptr ? tableof(info->symtable) : nullptr;
    if (table == nullptr)
        return;
    SYMTABLE **link = &tables;
    while (*link != table)
        link = &(*link)->previous;
    *link = table->previous;
    arenafree(&table->arena);
    discardblocks(table->slots, table, info);
}

_tagsymbol *symadd(_tagsymlist *table, _tagsymbol *symbol) {
    _tagsymbol *found = finduncut(table, symbol->name);
    const NAME name = hashedname(symbol->name, strlen(symbol->name));
    symbol->length = static_cast<int32_t>(name.length);
    if (found == symbol || (found == nullptr && insert(table, tableof(table), symbol, name.hash)))
        return symbol;
    if (found != nullptr)
        merge(found, symbol->type, symbol->scope, symbol->size);
    discardblocks(symbol->name, symbol);
    return found;
}

void symprepare(const _tagsymlist *table, SYMENTRY *entry) {
    const SYMTABLE *index = reinterpret_cast<const SYMTABLE *>(table);
    size_t length = static_cast<size_t>(entry->length);
    symstrip(&entry->name, &length);
    entry->length = static_cast<int32_t>(length);
    entry->hash = fasthash(entry->name, length);
    __builtin_prefetch(&index->slots[entry->hash & (index->capacity - 1)]);
}

ARENA *symarena(_tagsymlist *table) {
    return &reinterpret_cast<SYMTABLE *>(table)->arena;
}

bool symenterall(_tagsymlist *table, SYMENTRY *entries, int count) {
    SYMTABLE *index = reinterpret_cast<SYMTABLE *>(table);
    for (int i = 0; i < count; ++i) {
        entries[i].symbol = candidate(index, entries[i].hash);
        __builtin_prefetch(entries[i].symbol);
        // The record's end; the address is a number, for there may be no symbol to count from.
        const auto end = reinterpret_cast<uintptr_t>(entries[i].symbol) + 63;
        __builtin_prefetch(reinterpret_cast<const void *>(end));
    }
    for (int i = 0; i < count; ++i) {
        SYMENTRY &entry = entries[i];
        const NAME name = {entry.name, static_cast<size_t>(entry.length), entry.hash};
        if (entry.symbol == nullptr || !isnamed(entry.symbol, name))
            entry.symbol = find(index, name);
        if (entry.symbol != nullptr) {
            merge(entry.symbol, entry.type, entry.scope, entry.size);
            continue;
        }
        entry.symbol = newsymbol(&index->arena, entry);
        if (entry.symbol == nullptr || !insert(table, index, entry.symbol, entry.hash))
            return false;
    }
    return true;
}

_tagsymbol *symfind(const _tagsymlist *table, const char *name) {
    // Writers cut a name before the loader strips its leading underscores.
    constexpr size_t leadingAtMost = 3;
    _tagsymbol *symbol = finduncut(table, name);
    const size_t length = strlen(name);
    for (size_t limit = SYMBOLLIMIT; symbol == nullptr && limit >= SYMBOLLIMIT - leadingAtMost;
         --limit) {
        if (length <= limit)
            continue;
        char cut[SYMBOLLIMIT + 1];
        copytext(cut, name, limit, sizeof cut);
        for (size_t end = limit; OPTunderscores == 0 && end > 0 && cut[end - 1] == '_'; --end)
            cut[end - 1] = 0;
        symbol = finduncut(table, cut);
    }
    return symbol;
}

_tagsymbol *symfindnth(const _tagsymlist *table, const char *name, int n) {
    const SYMTABLE *index = tableof(table);
    const size_t length = strlen(name);
    const int bucket = hashof(name, length);
    if (n == 1 && index != nullptr && index->heads[bucket] == table[bucket].symbol)
        return indexfind(index, hashedname(name, length));
    return chainfind(table, name, n);
}

int symhash(const char *name) {
    return hashof(name, strlen(name));
}
