// Small writers for the reports, which write hundreds of megabytes when asked for all
// closures: no format text is looked at twice for every entry.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>

inline void putchars(FILE *out, const char *text) {
    fwrite_unlocked(text, 1, strlen(text), out);
}

// Writes the texts one behind the other.
template <typename... TEXTS> void putchars(FILE *out, const char *first, TEXTS... rest) {
    putchars(out, first);
    putchars(out, rest...);
}

// A decimal number.
void putnumber(FILE *out, int64_t number);

// A decimal number or text right-aligned in `width` columns; a longer one is written whole.
void putaligned(FILE *out, int64_t number, int width);
void putaligned(FILE *out, const char *text, int width);

void putspaces(FILE *out, int64_t count);
