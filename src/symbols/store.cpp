#include "symbols/store.h"

#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "symbols/options.h"
#include "symbols/symindex.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr size_t VARIANTSIZE = 256; // of a name with an underscore added

SYMTABLE *tables = nullptr;

// Returns the table of cinew with these buckets; null for a caller's own buckets.
SYMTABLE *tableof(const _tagsymlist *buckets) {
    SYMTABLE *table = tables;
    while (table != nullptr && table->buckets != buckets)
        table = table->previous;
    return table;
}

int bucketof(std::string_view name) {
    uint32_t hash = 0;
    for (size_t i = name.size() > 4 ? name.size() - 4 : 0; i < name.size(); ++i)
        hash = hash * 4 + static_cast<uint32_t>(charvalue(name[i]));
    return static_cast<int>(hash & (SYMBUCKETS - 1));
}

_tagsymbol *indexfind(const SYMTABLE *table, std::string_view name) {
    return symindexfind(&table->index, name, symindexhash(&table->index, name, false));
}

// Finds the name, or it with "_" added before or after it when any stored name has one there.
_tagsymbol *find(const SYMTABLE *table, std::string_view name, uint64_t hash) {
    const size_t length = name.size();
    _tagsymbol *symbol = symindexfind(&table->index, name, hash);
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

// Most references set nothing: a store of the same value would have to be written to memory.
void merge(_tagsymbol *symbol, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    if (symbol->type == TYPE_UNKNOWN && type != TYPE_UNKNOWN)
        symbol->type = type;
    if (symbol->scope == SCOPE_UNKNOWN)
        symbol->scope = scope;
    if (symbol->size == 0 && size != 0)
        symbol->size = size;
}

// Puts the symbol into its bucket and, unless `table` is null, into the index.
bool insert(_tagsymlist *buckets, SYMTABLE *table, _tagsymbol *symbol, std::string_view name,
            uint64_t hash) {
    if (table != nullptr && !symindexadd(&table->index, symbol, hash))
        return false;
    const int number = bucketof(name);
    _tagsymlist *bucket = &buckets[number];
    if (table != nullptr) {
        table->leading += name.starts_with('_') ? 1 : 0;
        table->trailing += name.ends_with('_') ? 1 : 0;
        if (table->heads[number] == bucket->symbol)
            table->heads[number] = symbol;
    }
    symbol->next = bucket->symbol;
    bucket->symbol = symbol;
    return true;
}

constexpr size_t readOffset = offsetof(_tagsymbol, size); // of the part that the loader reads
constexpr size_t textOffset = offsetof(_tagsymbol, text);

// Keeps a long name in one cache line with the loader's fields. Short names would waste memory so.
_tagsymbol *newsymbol(ARENA *arena, const SYMENTRY &entry) {
    constexpr size_t line = 64;
    constexpr size_t mostShort = 16;
    const size_t length = entry.name.size();
    const size_t place = (reinterpret_cast<uintptr_t>(arena->next) + readOffset) % line;
    if (length > mostShort && place + textOffset - readOffset + length > line)
        arenaalloc(arena, line - place);
    auto *symbol = static_cast<_tagsymbol *>(
        arenaalloc(arena, std::max(sizeof(_tagsymbol), textOffset + length + 1)));
    if (symbol == nullptr)
        return nullptr;
    char *copy = reinterpret_cast<char *>(symbol) + textOffset;
    const auto shortLength = static_cast<uint8_t>(length < 256 ? length : 0);
    *symbol = {copy, nullptr, nullptr, 0, 0, entry.size, entry.type, entry.scope, shortLength, {}};
    memcpy(copy, entry.name.data(), length);
    copy[length] = 0;
    return symbol;
}

template <typename T> T *newrecord() {
    T *record = gallocarray<T>(1);
    if (record != nullptr)
        *record = {};
    return record;
}

// Calls the function with each symbol's bucket and the symbol. Follows all chains side by side, so
// that their cache misses overlap.
template <typename F> void eachsymbol(const _tagsymlist *table, const F &function) {
    struct {
        int bucket;
        _tagsymbol *symbol;
    } chains[SYMBUCKETS];
    int open = 0;
    for (int i = 0; i < SYMBUCKETS; ++i) {
        if (table[i].symbol != nullptr)
            chains[open++] = {i, table[i].symbol};
    }
    while (open > 0) {
        int kept = 0;
        for (int i = 0; i < open; ++i) {
            const auto [bucket, symbol] = chains[i];
            function(bucket, symbol);
            __builtin_prefetch(symbol->next);
            if (symbol->next != nullptr)
                chains[kept++] = {bucket, symbol->next};
        }
        open = kept;
    }
}

// Returns the value's text; "????" for a value outside the enumeration.
const char *choose(const char *const (&texts)[3], int32_t value) {
    return value >= 0 && value < 3 ? texts[value] : "????";
}

} // namespace

TVKINFO *cinew() {
    auto *info = newrecord<TVKINFO>();
    auto *table = newrecord<SYMTABLE>();
    if (info == nullptr || table == nullptr || !symindexmake(&table->index)) {
        grelease(info);
        grelease(table);
        return nullptr;
    }
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
    arenafree(&table->nodes);
    arenafree(&table->records);
    gfree(table->index.slots);
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
    const std::string_view text = symstripped(name);
    char *copy = galloctext(text.data(), static_cast<int64_t>(text.size()));
    if (symbol == nullptr || copy == nullptr) {
        grelease(symbol);
        grelease(copy);
        return nullptr;
    }
    *symbol = {copy, nullptr, nullptr, 0, 0, size, type, scope, 0, {}};
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
    SYMTABLE *own = tableof(table);
    const uint64_t hash = own != nullptr ? symindexhash(&own->index, name, false) : 0;
    if (found == symbol || (found == nullptr && insert(table, own, symbol, name, hash)))
        return symbol;
    if (found != nullptr)
        merge(found, symbol->type, symbol->scope, symbol->size);
    gfree(symbol->name);
    gfree(symbol);
    return found;
}

bool symenterall(SYMTABLE *table, SYMENTRY *entries, int count) {
    const SYMINDEX &index = table->index;
    for (int i = 0; i < count; ++i) {
        const uint64_t hash = entries[i].hash;
        entries[i].symbol = slotsymbol(index.slots[nextslot(&index, hash, hash)]);
        // As a number, because the symbol may be null.
        const auto symbol = reinterpret_cast<uintptr_t>(entries[i].symbol);
        __builtin_prefetch(reinterpret_cast<const void *>(symbol + readOffset));
    }
    for (int i = 0; i < count; ++i) {
        SYMENTRY &entry = entries[i];
        if (entry.symbol == nullptr || !symisnamed(entry.symbol, entry.name))
            entry.symbol = find(table, entry.name, entry.hash);
        if (entry.symbol != nullptr) {
            merge(entry.symbol, entry.type, entry.scope, entry.size);
            continue;
        }
        entry.symbol = newsymbol(&table->records, entry);
        if (entry.symbol == nullptr ||
            !insert(table->buckets, table, entry.symbol, entry.name, entry.hash))
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

_tagsymbol **symall(const _tagsymlist *table, int64_t *count) {
    int64_t ends[SYMBUCKETS + 1] = {}; // of the buckets before
    eachsymbol(table, [&](int bucket, const _tagsymbol *) { ++ends[bucket + 1]; });
    for (int i = 0; i < SYMBUCKETS; ++i)
        ends[i + 1] += ends[i];
    *count = ends[SYMBUCKETS];
    auto **symbols = galloclarge<_tagsymbol *>(*count);
    if (symbols != nullptr)
        eachsymbol(table,
                   [&](int bucket, _tagsymbol *symbol) { symbols[ends[bucket]++] = symbol; });
    return symbols;
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
