// Small writers for the reports, which write hundreds of megabytes when asked for all
// closures: no format text is looked at twice for every entry, and the stream sees large
// blocks only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

constexpr size_t OUTPUTSIZE = 64 * 1024;

// Text on its way to a stream. Whoever begins with one ends it with flushoutput before the
// stream is used again. There is room for one at a time.
struct OUTPUT {
    FILE *stream;
    char *next;
    char *end;
};

OUTPUT beginoutput(FILE *stream);

// Hands everything to the stream, whose error flag shows a failure.
void flushoutput(OUTPUT *out);

// Writes a text that does not fit, for puttext.
void putlong(OUTPUT *out, const char *text, size_t length);

inline void puttext(OUTPUT *out, const char *text, size_t length) {
    if (length > static_cast<size_t>(out->end - out->next))
        return putlong(out, text, length);
    memcpy(out->next, text, length);
    out->next += length;
}

// Writes the texts one behind the other.
template <typename... TEXTS> void puttexts(OUTPUT *out, TEXTS... texts) {
    (puttext(out, texts, strlen(texts)), ...);
}

void putspaces(OUTPUT *out, int64_t count);

// A decimal number.
void putnumber(OUTPUT *out, int64_t number);

// A decimal number or text right-aligned in `width` columns; a longer one is written whole.
void putaligned(OUTPUT *out, int64_t number, int width);
void putaligned(OUTPUT *out, const char *text, int width);
