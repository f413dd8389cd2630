// Block layout, for a request of n bytes:
//
//   0..3    "GMEM" while the block is held, "GFRE" once it was freed
//   4..7    n
//   8..     the caller's n bytes
//   8+n..   "GEND", which detects one byte too many
//
// A table also keeps every address with its size, marked held or freed. gfree reads it
// first and then only guards of held blocks. So it detects a second release without
// touching freed memory, and never reads outside the block if its size is damaged.
#include "mem/galloc.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int galloccount = 0;
int (*gprintf)(const char *format, ...) = stdprintf;

namespace {

constexpr int headBytes = 8;
constexpr int guardBytes = 4;
constexpr intptr_t nullZone = 2047; // addresses this close to zero count as null

constexpr int triggerUnread = 0;
constexpr int triggerNone = -1;
int failureTrigger = triggerUnread;

// Open addressing: a power of two of slots, at most half of them used. A slot is an address
// with all bits inverted, so that leak checkers do not count it as a reference. Its lowest
// bit is set while the block is held; a free slot is 0.
struct ADDRESSTABLE {
    uint64_t *slots;
    int32_t *sizes; // of the block at each slot; one allocation with the slots
    uint64_t capacity;
    uint64_t used;
};
ADDRESSTABLE addresses = {nullptr, nullptr, 0, 0};

constexpr uint64_t heldBit = 1;

uint64_t addresskey(const void *address) {
    return ~static_cast<uint64_t>(reinterpret_cast<uintptr_t>(address)) & ~heldBit;
}

// Returns the slot of the key, or the free slot for it.
uint64_t findslot(const ADDRESSTABLE &table, uint64_t key) {
    const uint64_t mask = table.capacity - 1;
    uint64_t index = (key * 0x9E3779B97F4A7C15ULL) >> 20 & mask;
    while (table.slots[index] != 0 && (table.slots[index] & ~heldBit) != key)
        index = (index + 1) & mask;
    return index;
}

// Grows the table until one more address fits. Returns false when memory runs out.
bool reserveslot() {
    if (addresses.used * 2 < addresses.capacity)
        return true;
    ADDRESSTABLE larger = {};
    larger.capacity = addresses.capacity == 0 ? 256 : addresses.capacity * 2;
    larger.used = addresses.used;
    larger.slots =
        static_cast<uint64_t *>(calloc(larger.capacity, sizeof(uint64_t) + sizeof(int32_t)));
    if (larger.slots == nullptr)
        return false;
    larger.sizes = reinterpret_cast<int32_t *>(larger.slots + larger.capacity);
    for (uint64_t i = 0; i < addresses.capacity; ++i) {
        if (addresses.slots[i] != 0) {
            const uint64_t slot = findslot(larger, addresses.slots[i] & ~heldBit);
            larger.slots[slot] = addresses.slots[i];
            larger.sizes[slot] = addresses.sizes[i];
        }
    }
    free(addresses.slots);
    addresses = larger;
    return true;
}

// Returns whether GALLOCMAX makes the next allocation fail. A value that is no number
// reads as 0, and the variable is read again each time.
bool failpurposely() {
    if (failureTrigger == triggerUnread) {
        const char *value = getenv("GALLOCMAX");
        failureTrigger =
            value == nullptr ? triggerNone : static_cast<int>(strtol(value, nullptr, 10));
    }
    return galloccount == failureTrigger;
}

bool guardis(const char *guard, const char *text) {
    return memcmp(guard, text, guardBytes) == 0;
}

// Returns whether the guards and the size of a held block of `allocated` bytes are intact.
bool issound(const char *block, int allocated) {
    int size = 0;
    memcpy(&size, block + guardBytes, sizeof size);
    return guardis(block, "GMEM") && size >= 1 && size <= allocated &&
           guardis(block + headBytes + size, "GEND");
}

} // namespace

int stdprintf(const char *format, ...) {
    char text[8192];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0)
        return length;
    fputs(text, stdout);
    return length < static_cast<int>(sizeof text) ? length : static_cast<int>(sizeof text) - 1;
}

void *galloc(int size) {
    const long shownSize = size;
    if (size <= 0) {
        gprintf("galloc - INVALID SIZE %ld\n", shownSize);
        return nullptr;
    }
    if (failpurposely()) {
        gprintf("galloc - ERROR, PURPOSELY FAILING ON GALLOC COUNT %d, SIZE %ld\n", galloccount,
                shownSize);
        return nullptr;
    }
    char *block = nullptr;
    if (reserveslot())
        block = static_cast<char *>(malloc(static_cast<size_t>(size) + headBytes + guardBytes));
    if (block == nullptr) {
        gprintf("galloc - FAILED. OUT OF MEMORY. SIZE REQUESTED %ld\n", shownSize);
        return nullptr;
    }
    memcpy(block, "GMEM", guardBytes);
    memcpy(block + guardBytes, &size, sizeof size);
    memcpy(block + headBytes + size, "GEND", guardBytes);
    char *address = block + headBytes;
    const uint64_t slot = findslot(addresses, addresskey(address));
    addresses.used += addresses.slots[slot] == 0 ? 1 : 0;
    addresses.slots[slot] = addresskey(address) | heldBit;
    addresses.sizes[slot] = size;
    ++galloccount;
    return address;
}

bool gfree(void *address) {
    const intptr_t position = reinterpret_cast<intptr_t>(address);
    if (position >= -nullZone && position <= nullZone) {
        gprintf("gfree - ATTEMPT TO FREE NULL POINTER\n");
        return false;
    }
    const bool possible = addresses.slots != nullptr && (position & 1) == 0;
    const uint64_t slot = possible ? findslot(addresses, addresskey(address)) : 0;
    const bool known = possible && addresses.slots[slot] != 0;
    bool twice = known && (addresses.slots[slot] & heldBit) == 0;
    if (known && !twice) {
        char *block = static_cast<char *>(address) - headBytes;
        if (issound(block, addresses.sizes[slot])) {
            memcpy(block, "GFRE", guardBytes);
            free(block);
            addresses.slots[slot] &= ~heldBit;
            --galloccount;
            return true;
        }
        twice = guardis(block, "GFRE");
    }
    gprintf(twice ? "gfree - ATTEMPT TO FREE MEMORY TWICE\n"
                  : "gfree - SENTINAL CORRUPTED; PROBABLE MEMORY DATA CORRUPTION\n");
    return false;
}

char *galloctext(const char *text, int64_t length) {
    char *copy = gallocarray<char>(length + 1);
    if (copy != nullptr) {
        memcpy(copy, text, static_cast<size_t>(length));
        copy[length] = 0;
    }
    return copy;
}

char *galloctext(const char *text) {
    return galloctext(text, static_cast<int64_t>(strlen(text)));
}
