#include "symbols/symindex.h"

#include "mem/arena.h"
#include "mem/galloc.h"

#include <sys/random.h>

namespace {

constexpr uint64_t firstCapacity = 1024;

bool isnamed(const _tagsymbol *symbol, std::string_view name) {
    return static_cast<size_t>(symbol->length) == name.size() &&
           memcmp(symbol->name, name.data(), name.size()) == 0;
}

void put(SYMINDEX *index, const INDEXSLOT &slot) {
    uint64_t i = slot.hash & index->mask;
    while (index->slots[i].symbol != nullptr)
        i = (i + 1) & index->mask;
    index->slots[i] = slot;
}

// Gives the index `capacity` slots. Returns false when memory runs out.
bool resize(SYMINDEX *index, uint64_t capacity) {
    SYMINDEX larger = *index;
    larger.slots = galloclarge<INDEXSLOT>(static_cast<int64_t>(capacity));
    if (larger.slots == nullptr)
        return false;
    memset(larger.slots, 0, capacity * sizeof(INDEXSLOT));
    larger.mask = capacity - 1;
    for (uint64_t i = 0; index->slots != nullptr && i <= index->mask; ++i) {
        if (index->slots[i].symbol != nullptr)
            put(&larger, index->slots[i]);
    }
    grelease(index->slots);
    *index = larger;
    return true;
}

} // namespace

bool symindexmake(SYMINDEX *index) {
    // The key stays as it is here when the system has no random bytes.
    *index = {nullptr, 0, 0, {0x9E3779B97F4A7C15, 0xBF58476D1CE4E5B9}};
    getrandom(index->key, sizeof index->key, GRND_NONBLOCK);
    return resize(index, firstCapacity);
}

_tagsymbol *symindexfind(const SYMINDEX *index, std::string_view name, uint64_t hash) {
    for (uint64_t i = hash & index->mask;; i = (i + 1) & index->mask) {
        const INDEXSLOT &slot = index->slots[i];
        if (slot.symbol == nullptr || (slot.hash == hash && isnamed(slot.symbol, name)))
            return slot.symbol;
    }
}

bool symindexadd(SYMINDEX *index, _tagsymbol *symbol, uint64_t hash) {
    if (index->used * 4 >= (index->mask + 1) * 3 && !resize(index, (index->mask + 1) * 2))
        return false;
    put(index, {hash, symbol});
    ++index->used;
    return true;
}
