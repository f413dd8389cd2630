// Memory for records that are released all together: cut one behind the other from a few
// large blocks of galloc.
#pragma once

#include "mem/galloc.h"

#include <cstddef>

struct ARENABLOCK;

// An arena; an empty one is all zero.
struct ARENA {
    ARENABLOCK *newest;
    char *next;  // the rest of the newest block
    size_t left; // its bytes
};

// `size` bytes, at least 1, not cleared, aligned to 8; null when memory runs out.
void *arenaalloc(ARENA *arena, size_t size);

// Gives back all that the arena handed out; it is then empty.
void arenafree(ARENA *arena);

// Tells the system that a block of `size` bytes will be used all over, so that it maps it at
// once, or in large pages, and not page by page.
void adviseblock(void *block, size_t size);

// gallocarray for an array that may be large and is used all over; `count` may be 0.
template <typename T> T *galloclarge(int64_t count) {
    T *array = gallocarray<T>(count > 0 ? count : 1);
    if (array != nullptr)
        adviseblock(array, static_cast<size_t>(count) * sizeof(T));
    return array;
}
