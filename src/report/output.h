// Writers of report texts. A report may have hundreds of megabytes: the writers parse no formats
// and write blocks of 32 KiB.
#pragma once

#include "symbols/options.h"
#include "symbols/store.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

constexpr size_t OUTPUTSIZE = 32 * 1024;
constexpr int64_t OUTPUTFEW = 32; // bytes of room after a full buffer

// Buffered text for a stream. Call flushoutput before using the stream directly. All outputs share
// one buffer: use one at a time.
struct OUTPUT {
    FILE *stream;
    char *next;
    char *end;
};

OUTPUT beginoutput(FILE *stream);

// Writes the buffer, at most OUTPUTSIZE bytes, to the stream. A failure sets its error flag.
void flushoutput(OUTPUT *out);

// Used by puttext for a text that does not fit the buffer.
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

// Counts `count` bytes at `next`, at most OUTPUTFEW, as written.
inline void putdone(OUTPUT *out, int64_t count) {
    out->next += count;
    if (out->next > out->end)
        flushoutput(out);
}

// Writes `count` spaces, none if it is negative. A memset of constant size needs no call.
inline void putspaces(OUTPUT *out, int64_t count) {
    for (; count > 0; count -= OUTPUTFEW) {
        memset(out->next, ' ', OUTPUTFEW);
        putdone(out, std::min(count, OUTPUTFEW));
    }
}

// Write a number or text right-aligned in `width` columns, at most 16; a longer one stays whole.
void putnumber(OUTPUT *out, int64_t number, int width = 0);
void putaligned(OUTPUT *out, std::string_view text, int width);

// Writes a heading, only above verbosity 1.
inline void putheading(OUTPUT *out, const char *title) {
    if (OPTverbose > 1)
        puttexts(out, "\n", preheader, title, postheader);
}

// Writes a line of LINKS IN up to the library: indentation, file name and " (".
void putlinkstart(OUTPUT *out, const _tagfile *file, int level);

// Writes the rest: size and symbol.
void putlinkend(OUTPUT *out, const _tagfile *file, const _tagsymbol *symbol);
