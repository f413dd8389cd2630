// An arena: memory cut from a few large blocks of galloc and freed as a whole.
#pragma once

#include "mem/galloc.h"

#include <cstddef>

struct ARENABLOCK;

// An empty arena is all zero.
struct ARENA {
    ARENABLOCK *newest;
    char *next;  // first unused byte of the newest block
    size_t left; // unused bytes from there
};

// Returns `size` bytes, at least 1, not cleared and aligned to 8. The arena owns them.
// Returns null when memory runs out.
void *arenaalloc(ARENA *arena, size_t size);

// Frees all memory of the arena and empties it.
void arenafree(ARENA *arena);

// Advises the system to map a block of `size` bytes at once or in large pages.
void adviseblock(void *block, size_t size);

// Works like gallocarray for an array that will be used whole; `count` may be 0.
template <typename T> T *galloclarge(int64_t count) {
    T *array = gallocarray<T>(count > 0 ? count : 1);
    if (array != nullptr)
        adviseblock(array, static_cast<size_t>(count) * sizeof(T));
    return array;
}
