// The checked allocator. Every dynamic block of the program comes from galloc and goes
// back through gfree, which recognises damaged blocks, second releases and null pointers
// and says so instead of passing them on to the system allocator.
//
// The environment variable GALLOCMAX makes allocations fail while that many blocks are
// held, so that every caller's failure path can be exercised from outside.
#pragma once

#include <cstdint>

// Number of blocks held now: one up for every successful galloc, one down for every
// successful gfree.
extern int galloccount;

// The hook through which this folder's messages are written; takes what printf takes.
extern int (*gprintf)(const char *format, ...);

// The hook's initial value: formats into 8,192 bytes (a longer text is cut), writes the
// result to standard output and returns the number of characters written.
[[gnu::format(printf, 1, 2)]] int stdprintf(const char *format, ...);

// A new block of `size` bytes, not cleared, aligned to 8 bytes and owned by the caller.
// Null, with a message through gprintf, when size is below 1, when galloccount equals
// GALLOCMAX, or when the system has no more memory.
void *galloc(int size);

// Gives a block back. False, with a message through gprintf and nothing released, when
// the address is null, was released before, or its block's guards are damaged. Any
// address may be asked about: memory that is not a held block is never read.
bool gfree(void *address);

// galloc for `count` records of type T; null also when the size passes an int.
template <typename T> T *gallocarray(int64_t count) {
    int64_t bytes = 0;
    if (__builtin_mul_overflow(count, static_cast<int64_t>(sizeof(T)), &bytes) || bytes > INT32_MAX)
        return nullptr;
    return static_cast<T *>(galloc(static_cast<int>(bytes)));
}

// Frees the block unless the pointer is null, and sets the pointer to null.
template <typename T> void grelease(T *&block) {
    if (block != nullptr)
        gfree(block);
    block = nullptr;
}

// Makes room for one more element after the first `count` of an array that holds `room`, by
// doubling it. False when memory runs out, with nothing changed.
template <typename T, typename N> bool growarray(T *&array, N count, N &room) {
    if (count < room)
        return true;
    constexpr int64_t least = 8;
    const int64_t larger = room > 0 ? int64_t{room} * 2 : least;
    T *block = gallocarray<T>(larger);
    if (block == nullptr)
        return false;
    for (N i = 0; i < count; ++i)
        block[i] = array[i];
    grelease(array);
    array = block;
    room = static_cast<N>(larger);
    return true;
}

// An owned copy of the first `length` bytes of `text`, with a terminator behind them; null
// when memory runs out.
char *galloctext(const char *text, int64_t length);

// The same for a whole text.
char *galloctext(const char *text);
