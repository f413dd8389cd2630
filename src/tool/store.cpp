#include "tool/store.h"

#include "brax/text.h"
#include "mem/galloc.h"
#include "tool/options.h"

#include <cstring>

namespace {

constexpr int VARIANTSIZE = 256; // room for a name with an underscore added

// The index: open addressing, a power of two of slots, at most half of them used.
struct INDEXSLOT {
    uint64_t hash;
    _tagsymbol *symbol; // null in a free slot
};

// What cinew makes: the buckets that everybody sees, and the index right behind them.
struct SYMTABLE {
    _tagsymlist buckets[SYMBUCKETS];
    INDEXSLOT *slots;
    uint64_t capacity;
    uint64_t used;
    int64_t leading;  // names that begin with an underscore
    int64_t trailing; // names that end with one
};

constexpr uint64_t firstCapacity = 1024;

// Blocks of records that live as long as the process, the newest first.
struct ARENABLOCK {
    ARENABLOCK *previous;
};
constexpr size_t arenaBlockBytes = 256 * 1024;
ARENABLOCK *arena = nullptr;
char *arenaNext = nullptr;
size_t arenaLeft = 0;

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

NAME hashedname(const char *text, size_t length) {
    uint64_t hash = length;
    size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        uint64_t word = 0;
        memcpy(&word, text + i, 8);
        hash = mix(hash, word);
    }
    uint64_t word = 0;
    memcpy(&word, text + i, length - i);
    hash = mix(mix(hash, word), hash >> 32);
    return {text, length, hash};
}

SYMTABLE *tableof(_tagsymlist *buckets) {
    return reinterpret_cast<SYMTABLE *>(buckets);
}

const SYMTABLE *tableof(const _tagsymlist *buckets) {
    return reinterpret_cast<const SYMTABLE *>(buckets);
}

_tagsymbol *indexfind(const SYMTABLE *table, const NAME &name) {
    const uint64_t mask = table->capacity - 1;
    for (uint64_t i = name.hash & mask; table->slots[i].symbol != nullptr; i = (i + 1) & mask) {
        const INDEXSLOT &slot = table->slots[i];
        if (slot.hash == name.hash && memcmp(slot.symbol->name, name.text, name.length) == 0 &&
            slot.symbol->name[name.length] == 0)
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
    if (slots != nullptr)
        memset(slots, 0, capacity * sizeof(INDEXSLOT));
    return slots;
}

bool reserveslot(SYMTABLE *table) {
    if (table->used * 2 < table->capacity)
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

// The name with "_" added in front or behind, when any stored name has one there.
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

void merge(_tagsymbol *symbol, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    if (symbol->type == TYPE_UNKNOWN)
        symbol->type = type;
    if (symbol->scope == SCOPE_UNKNOWN)
        symbol->scope = scope;
    if (symbol->size == 0)
        symbol->size = size;
}

int hashof(const char *name, size_t length) {
    uint32_t hash = 0;
    for (size_t i = length > 4 ? length - 4 : 0; i < length; ++i)
        hash = hash * 4 + static_cast<uint32_t>(charvalue(name[i]));
    return static_cast<int>(hash & (SYMBUCKETS - 1));
}

bool insert(SYMTABLE *table, _tagsymbol *symbol, const NAME &name) {
    if (!reserveslot(table))
        return false;
    indexput(table->slots, table->capacity, name.hash, symbol);
    ++table->used;
    table->leading += symbol->name[0] == '_' ? 1 : 0;
    table->trailing += name.length > 0 && symbol->name[name.length - 1] == '_' ? 1 : 0;
    _tagsymlist *bucket = &table->buckets[hashof(symbol->name, name.length)];
    symbol->next = bucket->symbol;
    bucket->symbol = symbol;
    return true;
}

void strip(const char **name, size_t *length) {
    if (OPTunderscores != 0)
        return;
    for (; *length > 0 && **name == '_'; ++*name)
        --*length;
    while (*length > 0 && (*name)[*length - 1] == '_')
        --*length;
}

void release(_tagsymbol *symbol) {
    gfree(symbol->name);
    gfree(symbol);
}

} // namespace

void *storealloc(size_t size) {
    size = (size + 7) & ~static_cast<size_t>(7);
    if (size > arenaLeft) {
        const size_t bytes = size + sizeof(ARENABLOCK) > arenaBlockBytes ? size + sizeof(ARENABLOCK)
                                                                         : arenaBlockBytes;
        auto *block = static_cast<ARENABLOCK *>(galloc(static_cast<int>(bytes)));
        if (block == nullptr)
            return nullptr;
        block->previous = arena;
        arena = block;
        arenaNext = reinterpret_cast<char *>(block + 1);
        arenaLeft = bytes - sizeof(ARENABLOCK);
    }
    char *memory = arenaNext;
    arenaNext += size;
    arenaLeft -= size;
    return memory;
}

TVKINFO *cinew() {
    auto *info = gallocarray<TVKINFO>(1);
    auto *table = gallocarray<SYMTABLE>(1);
    INDEXSLOT *slots = newslots(firstCapacity);
    if (info == nullptr || table == nullptr || slots == nullptr) {
        void *blocks[] = {info, table, slots};
        for (void *block : blocks) {
            if (block != nullptr)
                gfree(block);
        }
        return nullptr;
    }
    *table = {};
    table->slots = slots;
    table->capacity = firstCapacity;
    *info = {table->buckets, nullptr};
    return info;
}

_tagfile *finew(const char *name, const char *library) {
    auto *file = gallocarray<_tagfile>(1);
    char *ownName = galloctext(name);
    char *ownLibrary = galloctext(library);
    if (file == nullptr || ownName == nullptr || ownLibrary == nullptr) {
        void *blocks[] = {file, ownName, ownLibrary};
        for (void *block : blocks) {
            if (block != nullptr)
                gfree(block);
        }
        return nullptr;
    }
    *file = {};
    file->name = ownName;
    file->library = ownLibrary;
    return file;
}

_tagsymbol *symnew(const char *name, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    auto *symbol = gallocarray<_tagsymbol>(1);
    size_t length = strlen(name);
    char *copy = gallocarray<char>(static_cast<int64_t>(length) + 1);
    if (symbol == nullptr || copy == nullptr) {
        if (symbol != nullptr)
            gfree(symbol);
        if (copy != nullptr)
            gfree(copy);
        return nullptr;
    }
    strip(&name, &length);
    memcpy(copy, name, length);
    copy[length] = 0;
    *symbol = {copy, type, scope, size, 0, nullptr, nullptr, 0};
    return symbol;
}

_tagsymlist *slnew() {
    auto *node = gallocarray<_tagsymlist>(1);
    if (node != nullptr)
        *node = {};
    return node;
}

_tagsymbol *symadd(_tagsymlist *table, _tagsymbol *symbol) {
    const NAME name = hashedname(symbol->name, strlen(symbol->name));
    _tagsymbol *found = find(tableof(table), name);
    if (found != nullptr)
        merge(found, symbol->type, symbol->scope, symbol->size);
    else if (insert(tableof(table), symbol, name))
        return symbol;
    release(symbol);
    return found;
}

_tagsymbol *symenter(_tagsymlist *table, const char *name, size_t length, SYMTYPE type,
                     SYMSCOPE scope, int32_t size) {
    strip(&name, &length);
    const NAME wanted = hashedname(name, length);
    _tagsymbol *symbol = find(tableof(table), wanted);
    if (symbol != nullptr) {
        merge(symbol, type, scope, size);
        return symbol;
    }
    // The name stands right behind its record: whoever looks at one soon looks at the other.
    symbol = static_cast<_tagsymbol *>(storealloc(sizeof(_tagsymbol) + length + 1));
    if (symbol == nullptr)
        return nullptr;
    char *copy = reinterpret_cast<char *>(symbol + 1);
    memcpy(copy, name, length);
    copy[length] = 0;
    *symbol = {copy, type, scope, size, 0, nullptr, nullptr, 0};
    return insert(tableof(table), symbol, wanted) ? symbol : nullptr;
}

_tagsymbol *symfind(const _tagsymlist *table, const char *name) {
    return find(tableof(table), hashedname(name, strlen(name)));
}

_tagsymbol *symfindnth(const _tagsymlist *table, const char *name, int n) {
    if (n == 1)
        return indexfind(tableof(table), hashedname(name, strlen(name)));
    _tagsymbol *symbol = table[symhash(name)].symbol;
    for (; symbol != nullptr; symbol = symbol->next) {
        if (strcmp(symbol->name, name) == 0 && --n == 0)
            return symbol;
    }
    return nullptr;
}

int symhash(const char *name) {
    return hashof(name, strlen(name));
}

const char *symname(const _tagsymbol *symbol) {
    return symbol->name;
}

const char *symfile(const _tagsymbol *symbol) {
    return symbol != nullptr && symbol->file != nullptr ? symbol->file->name : "unknown";
}

const char *symtype(const _tagsymbol *symbol) {
    switch (static_cast<int32_t>(symbol->type)) {
    case TYPE_FUNCTION:
        return "()";
    case TYPE_UNKNOWN:
    case TYPE_DATA:
        return "";
    default:
        return "????";
    }
}

const char *symscope(const _tagsymbol *symbol) {
    switch (static_cast<int32_t>(symbol->scope)) {
    case SCOPE_UNKNOWN:
        return "unknown";
    case SCOPE_GLOBAL:
        return "global";
    case SCOPE_LOCAL:
        return "local";
    default:
        return "????";
    }
}

int symsize(const _tagsymbol *symbol) {
    return symbol->size;
}
