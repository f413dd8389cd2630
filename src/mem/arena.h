// Memory for records that live as long as the process: cut one behind the other from a few
// large blocks of galloc, never given back.
#pragma once

#include "mem/galloc.h"

#include <cstddef>

// `size` bytes, not cleared, aligned to 8; null when memory runs out.
void *arenaalloc(size_t size);

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
