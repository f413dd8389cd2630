#include "symbols/symindex.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <sys/random.h>

bool symindexmake(SYMINDEX *index) {
    // The key stays as it is here when the system has no random bytes.
    *index = {nullptr, 0, 0, {0x9E3779B97F4A7C15, 0xBF58476D1CE4E5B9}};
    getrandom(index->key, sizeof index->key, GRND_NONBLOCK);
    return symindexreserve(index, 64);
}

bool symindexreserve(SYMINDEX *index, int64_t capacity) {
    SYMINDEX larger = *index;
    larger.mask = std::bit_ceil(static_cast<uint64_t>(capacity)) - 1;
    if (index->slots != nullptr && larger.mask <= index->mask)
        return true;
    larger.slots = galloclarge<uint64_t>(static_cast<int64_t>(larger.mask) + 1);
    if (larger.slots == nullptr)
        return false;
    memset(larger.slots, 0, (larger.mask + 1) * sizeof *larger.slots);
    larger.used = 0;
    for (uint64_t i = 0; index->used > 0 && i <= index->mask; ++i) {
        _tagsymbol *symbol = slotsymbol(index->slots[i]);
        if (symbol != nullptr)
            symindexadd(&larger, symbol, symindexhash(&larger, symbol->name, false));
    }
    grelease(index->slots);
    *index = larger;
    return true;
}

_tagsymbol *symindexfind(const SYMINDEX *index, std::string_view name, uint64_t hash) {
    for (uint64_t i = hash;; ++i) {
        i = nextslot(index, i, hash);
        _tagsymbol *symbol = slotsymbol(index->slots[i]);
        if (symbol == nullptr || symisnamed(symbol, name))
            return symbol;
    }
}

bool symindexadd(SYMINDEX *index, _tagsymbol *symbol, uint64_t hash) {
    if (index->used * 4 >= (index->mask + 1) * 3 &&
        !symindexreserve(index, static_cast<int64_t>(index->mask + 1) * 2))
        return false;
    uint64_t i = hash & index->mask;
    while (index->slots[i] != 0)
        i = (i + 1) & index->mask;
    index->slots[i] = reinterpret_cast<uintptr_t>(symbol) | hash >> ADDRESSBITS << ADDRESSBITS;
    ++index->used;
    return true;
}
