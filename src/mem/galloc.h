// mem: memory and byte streams for the whole program.
//
// Read this file first: galloc and gfree check every dynamic block. arena.h, hunk.h and
// hash.h build on it: memory freed as a whole, records of one size, a table of text keys.
// gstream.h reads and writes files. Nothing here depends on another folder.
//
// GALLOCMAX=n in the environment makes galloc fail while n blocks are held, to test every
// failure path from outside.
#pragma once

#include <cstdint>

// Number of blocks held now.
extern int galloccount;

// The hook that writes this folder's messages; takes printf's arguments.
extern int (*gprintf)(const char *format, ...);

// The hook's initial value. Prints at most 8,191 characters on standard output, cutting a
// longer text, and returns their number.
[[gnu::format(printf, 1, 2)]] int stdprintf(const char *format, ...);

// Returns a new block of `size` bytes, not cleared and aligned to 8. The caller owns it.
// Returns null after a message when size is below 1, galloccount equals GALLOCMAX, or
// memory runs out.
void *galloc(int size);

// Frees a block. Returns false after a message, and frees nothing, unless the address is a
// held block with intact guards. Any address is allowed: only held blocks are read.
bool gfree(void *address);

// Calls galloc for `count` records of type T. Also returns null when the size passes an int.
template <typename T> T *gallocarray(int64_t count) {
    int64_t bytes = 0;
    if (__builtin_mul_overflow(count, static_cast<int64_t>(sizeof(T)), &bytes) || bytes > INT32_MAX)
        return nullptr;
    return static_cast<T *>(galloc(static_cast<int>(bytes)));
}

// Frees the block unless it is null, and sets the pointer to null.
template <typename T> void grelease(T *&block) {
    if (block != nullptr)
        gfree(block);
    block = nullptr;
}

// Grows an array of `capacity` elements, of which `count` are used, by doubling until `more`
// fit after them. Returns false when memory runs out, with nothing changed.
template <typename T, typename N> bool growarray(T *&array, N count, N &capacity, N more = 1) {
    const int64_t wanted = int64_t{count} + more;
    if (wanted <= capacity)
        return true;
    constexpr int64_t least = sizeof(T) == 1 ? 256 : 8;
    int64_t larger = capacity > 0 ? int64_t{capacity} * 2 : least;
    while (larger < wanted)
        larger *= 2;
    T *block = gallocarray<T>(larger);
    if (block == nullptr)
        return false;
    for (N i = 0; i < count; ++i)
        block[i] = array[i];
    grelease(array);
    array = block;
    capacity = static_cast<N>(larger);
    return true;
}

// Returns a terminated copy of the first `length` bytes of the text. The caller owns it.
// Returns null when memory runs out.
char *galloctext(const char *text, int64_t length);

// Copies a whole string in the same way.
char *galloctext(const char *text);
