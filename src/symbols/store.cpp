#include "symbols/store.h"

#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "symbols/options.h"

namespace {

constexpr size_t VARIANTSIZE = 256; // of a name with an underscore added

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
    ARENA arena;        // the loader's records
    INDEXSLOT *slots;
    uint64_t capacity;
    uint64_t used;
    int64_t leading;  // names that begin with an underscore
    int64_t trailing; // names that end with one
};
SYMTABLE *tables = nullptr;

constexpr uint64_t firstCapacity = 1024;

uint64_t mix(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    return hash ^ hash >> 29;
}

// Hashes a name for the index. `padded`: the 8 bytes after it are readable and need no copy.
uint64_t hashname(std::string_view name, bool padded) {
    const char *text = name.data();
    size_t left = name.size();
    uint64_t hash = left;
    for (; left >= 8; left -= 8, text += 8)
        hash = mix(hash, eightbytes(text));
    char copy[8] = {};
    if (!padded) {
        memcpy(copy, text, left);
        text = copy;
    }
    hash = mix(hash, eightbytes(text) & ((uint64_t{1} << 8 * left) - 1));
    return mix(hash, hash >> 32);
}

// Returns the table of cinew with these buckets; null for a caller's own buckets.
SYMTABLE *tableof(const _tagsymlist *buckets) {
    SYMTABLE *table = tables;
    while (table != nullptr && table->buckets != buckets)
        table = table->previous;
    return table;
}

bool isnamed(const _tagsymbol *symbol, std::string_view name) {
    return static_cast<size_t>(symbol->length) == name.size() &&
           memcmp(symbol->name, name.data(), name.size()) == 0;
}

_tagsymbol *indexfind(const SYMTABLE *table, std::string_view name, uint64_t hash) {
    const uint64_t mask = table->capacity - 1;
    for (uint64_t i = hash & mask; table->slots[i].symbol != nullptr; i = (i + 1) & mask) {
        const INDEXSLOT &slot = table->slots[i];
        if (slot.hash == hash && isnamed(slot.symbol, name))
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
    auto *slots = galloclarge<INDEXSLOT>(static_cast<int64_t>(capacity));
    if (slots != nullptr)
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

int bucketof(std::string_view name) {
    uint32_t hash = 0;
    for (size_t i = name.size() > 4 ? name.size() - 4 : 0; i < name.size(); ++i)
        hash = hash * 4 + static_cast<uint32_t>(charvalue(name[i]));
    return static_cast<int>(hash & (SYMBUCKETS - 1));
}

// Removes the underscores at both ends, unless OPTunderscores is set.
std::string_view stripped(std::string_view name) {
    if (OPTunderscores != 0)
        return name;
    while (name.starts_with('_'))
        name.remove_prefix(1);
    while (name.ends_with('_'))
        name.remove_suffix(1);
    return name;
}

_tagsymbol *indexfind(const SYMTABLE *table, std::string_view name) {
    return indexfind(table, name, hashname(name, false));
}

// Finds the name, or it with "_" added before or after it when any stored name has one there.
_tagsymbol *find(const SYMTABLE *table, std::string_view name, uint64_t hash) {
    const size_t length = name.size();
    _tagsymbol *symbol = indexfind(table, name, hash);
    if (symbol != nullptr || table->leading + table->trailing == 0 || length + 2 > VARIANTSIZE)
        return symbol;
    char variant[VARIANTSIZE];
    variant[0] = variant[length + 1] = '_';
    memcpy(variant + 1, name.data(), length);
    if (table->leading > 0)
        symbol = indexfind(table, {variant, length + 1});
    if (symbol == nullptr && table->trailing > 0)
        symbol = indexfind(table, {variant + 1, length + 1});
    return symbol;
}

// Does the same in a table whose buckets a caller may have changed.
_tagsymbol *finduncut(const _tagsymlist *table, const char *name) {
    _tagsymbol *symbol = symfindnth(table, name, 1);
    if (symbol != nullptr || strlen(name) + 2 > VARIANTSIZE)
        return symbol;
    char variant[VARIANTSIZE + 1] = "_";
    appendtext(variant, name, sizeof variant);
    symbol = symfindnth(table, variant, 1);
    if (symbol != nullptr)
        return symbol;
    appendtext(variant, "_", sizeof variant);
    return symfindnth(table, variant + 1, 1);
}

void merge(_tagsymbol *symbol, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    if (symbol->type == TYPE_UNKNOWN)
        symbol->type = type;
    if (symbol->scope == SCOPE_UNKNOWN)
        symbol->scope = scope;
    if (symbol->size == 0)
        symbol->size = size;
}

// Puts the symbol into its bucket and, unless `table` is null, into the index.
bool insert(_tagsymlist *buckets, SYMTABLE *table, _tagsymbol *symbol, uint64_t hash) {
    if (table != nullptr && !reserveslot(table))
        return false;
    const std::string_view name(symbol->name, static_cast<size_t>(symbol->length));
    const int number = bucketof(name);
    _tagsymlist *bucket = &buckets[number];
    if (table != nullptr) {
        indexput(table->slots, table->capacity, hash, symbol);
        ++table->used;
        table->leading += name.starts_with('_') ? 1 : 0;
        table->trailing += name.ends_with('_') ? 1 : 0;
        if (table->heads[number] == bucket->symbol)
            table->heads[number] = symbol;
    }
    symbol->next = bucket->symbol;
    bucket->symbol = symbol;
    return true;
}

// Returns the first symbol with that hash. Its name may differ.
_tagsymbol *candidate(const SYMTABLE *table, uint64_t hash) {
    const uint64_t mask = table->capacity - 1;
    uint64_t i = hash & mask;
    while (table->slots[i].symbol != nullptr && table->slots[i].hash != hash)
        i = (i + 1) & mask;
    return table->slots[i].symbol;
}

_tagsymbol *newsymbol(ARENA *arena, const SYMENTRY &entry) {
    const size_t length = entry.name.size();
    // Name and record are adjacent for cache locality.
    auto *symbol = static_cast<_tagsymbol *>(arenaalloc(arena, sizeof(_tagsymbol) + length + 1));
    if (symbol == nullptr)
        return nullptr;
    char *copy = reinterpret_cast<char *>(symbol + 1);
    memcpy(copy, entry.name.data(), length);
    copy[length] = 0;
    *symbol = {
        copy, entry.type, entry.scope, entry.size, nullptr, nullptr, static_cast<int32_t>(length),
        0,    0};
    return symbol;
}

template <typename T> T *newrecord() {
    T *record = gallocarray<T>(1);
    if (record != nullptr)
        *record = {};
    return record;
}

// Returns the value's text; "????" for a value outside the enumeration.
const char *choose(const char *const (&texts)[3], int32_t value) {
    return value >= 0 && value < 3 ? texts[value] : "????";
}

} // namespace

TVKINFO *cinew() {
    auto *info = newrecord<TVKINFO>();
    auto *table = newrecord<SYMTABLE>();
    INDEXSLOT *slots = newslots(firstCapacity);
    if (info == nullptr || table == nullptr || slots == nullptr) {
        grelease(info);
        grelease(table);
        grelease(slots);
        return nullptr;
    }
    table->slots = slots;
    table->capacity = firstCapacity;
    table->previous = tables;
    tables = table;
    info->symtable = table->buckets;
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
    gfree(table->slots);
    gfree(table);
    gfree(info);
}

_tagfile *finew(const char *name, const char *library) {
    auto *file = newrecord<_tagfile>();
    char *ownName = galloctext(name);
    char *ownLibrary = galloctext(library);
    if (file == nullptr || ownName == nullptr || ownLibrary == nullptr) {
        grelease(file);
        grelease(ownName);
        grelease(ownLibrary);
        return nullptr;
    }
    file->name = ownName;
    file->library = ownLibrary;
    return file;
}

_tagsymbol *symnew(const char *name, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    auto *symbol = newrecord<_tagsymbol>();
    const std::string_view text = stripped(name);
    char *copy = galloctext(text.data(), static_cast<int64_t>(text.size()));
    if (symbol == nullptr || copy == nullptr) {
        grelease(symbol);
        grelease(copy);
        return nullptr;
    }
    *symbol = {copy, type, scope, size, nullptr, nullptr, 0, 0, 0};
    return symbol;
}

_tagsymlist *slnew() {
    return newrecord<_tagsymlist>();
}

_tagfilelist *flnew() {
    return newrecord<_tagfilelist>();
}

_tagsymbol *symadd(_tagsymlist *table, _tagsymbol *symbol) {
    const std::string_view name = symbol->name;
    _tagsymbol *found = finduncut(table, symbol->name);
    symbol->length = static_cast<int32_t>(name.size());
    if (found == symbol ||
        (found == nullptr && insert(table, tableof(table), symbol, hashname(name, false))))
        return symbol;
    if (found != nullptr)
        merge(found, symbol->type, symbol->scope, symbol->size);
    gfree(symbol->name);
    gfree(symbol);
    return found;
}

void symprepare(const _tagsymlist *table, SYMENTRY *entry) {
    const SYMTABLE *index = reinterpret_cast<const SYMTABLE *>(table);
    entry->name = stripped(entry->name);
    entry->hash = hashname(entry->name, true);
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
        // The record's end. As a number, because the symbol may be null.
        const auto end = reinterpret_cast<uintptr_t>(entries[i].symbol) + 63;
        __builtin_prefetch(reinterpret_cast<const void *>(end));
    }
    for (int i = 0; i < count; ++i) {
        SYMENTRY &entry = entries[i];
        if (entry.symbol == nullptr || !isnamed(entry.symbol, entry.name))
            entry.symbol = find(index, entry.name, entry.hash);
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
    const int bucket = symhash(name);
    if (n == 1 && index != nullptr && index->heads[bucket] == table[bucket].symbol)
        return indexfind(index, name);
    _tagsymbol *symbol = table[bucket].symbol;
    while (symbol != nullptr && (strcmp(symbol->name, name) != 0 || --n != 0))
        symbol = symbol->next;
    return symbol;
}

int symhash(const char *name) {
    return bucketof(name);
}

const char *symname(const _tagsymbol *symbol) {
    return symbol->name;
}

const char *symfile(const _tagsymbol *symbol) {
    return symbol != nullptr && symbol->file != nullptr ? symbol->file->name : "unknown";
}

const char *symtype(const _tagsymbol *symbol) {
    return choose({"", "()", ""}, symbol->type);
}

const char *symscope(const _tagsymbol *symbol) {
    return choose({"unknown", "global", "local"}, symbol->scope);
}

int symsize(const _tagsymbol *symbol) {
    return symbol->size;
}
