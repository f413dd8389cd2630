// A string that grows as needed, for names and paths of any length.
#pragma once

#include <cstdint>

// Starts as {}; growfree frees it.
struct GROWTEXT {
    char *text; // null at first, later terminated
    int64_t length;
    int64_t capacity; // in bytes
};

// Reserves `bytes` bytes, terminator included; the string stays. Returns false when memory
// runs out, with nothing changed.
bool growreserve(GROWTEXT *text, int64_t bytes);

// Appends a piece. Returns false when memory runs out, with nothing changed.
bool growappend(GROWTEXT *text, const char *piece);
bool growappend(GROWTEXT *text, const char *piece, int64_t length);

// Sets the string to the piece and fails as growappend does.
bool growset(GROWTEXT *text, const char *piece);

// Sets the length, which must be below the capacity, and terminates the string there.
void growcut(GROWTEXT *text, int64_t length);

void growfree(GROWTEXT *text);
