// Small writers for the reports, which may write hundreds of megabytes: they avoid the parsing of
// a format per entry and write blocks of 64 KiB.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

constexpr size_t OUTPUTSIZE = 64 * 1024;

// Buffered text for a stream. flushoutput is due before the stream is used otherwise. All share
// one buffer, so that one may be in use at a time.
struct OUTPUT {
    FILE *stream;
    char *next;
    char *end;
};

OUTPUT beginoutput(FILE *stream);

// Writes the buffer to the stream, whose error flag shows a failure.
void flushoutput(OUTPUT *out);

// Writes a text that does not fit, for puttext.
void putlong(OUTPUT *out, const char *text, size_t length);

inline void puttext(OUTPUT *out, const char *text, size_t length) {
    if (length > static_cast<size_t>(out->end - out->next))
        return putlong(out, text, length);
    memcpy(out->next, text, length);
    out->next += length;
}

// Writes the texts one after the other.
template <typename... TEXTS> void puttexts(OUTPUT *out, TEXTS... texts) {
    (puttext(out, texts, strlen(texts)), ...);
}

void putspaces(OUTPUT *out, int64_t count);

// A decimal number.
void putnumber(OUTPUT *out, int64_t number);

// A decimal number or text right-aligned in `width` columns; a longer one is written whole.
void putaligned(OUTPUT *out, int64_t number, int width);
void putaligned(OUTPUT *out, const char *text, int width);
