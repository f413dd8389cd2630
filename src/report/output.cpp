#include "report/output.h"

#include <algorithm>
#include <charconv>

namespace {

char buffer[OUTPUTSIZE];

} // namespace

OUTPUT beginoutput(FILE *stream) {
    return {stream, buffer, buffer + sizeof buffer};
}

void flushoutput(OUTPUT *out) {
    fwrite(buffer, 1, static_cast<size_t>(out->next - buffer), out->stream);
    out->next = buffer;
}

void putlong(OUTPUT *out, const char *text, size_t length) {
    for (size_t piece = 0; length > 0; text += piece, length -= piece) {
        if (out->next == out->end)
            flushoutput(out);
        piece = std::min(length, static_cast<size_t>(out->end - out->next));
        memcpy(out->next, text, piece);
        out->next += piece;
    }
}

void putmanyspaces(OUTPUT *out, int64_t count) {
    for (int64_t piece = 0; count > 0; count -= piece) {
        if (out->next == out->end)
            flushoutput(out);
        piece = std::min(count, int64_t{out->end - out->next});
        memset(out->next, ' ', static_cast<size_t>(piece));
        out->next += piece;
    }
}

void putnumber(OUTPUT *out, int64_t number, int width) {
    constexpr size_t few = 16;
    char text[3 * few];
    char *digits = text + few;
    memset(text, ' ', few);
    const char *end = std::to_chars(digits, text + sizeof text, number).ptr;
    const char *start = std::min<const char *>(digits, end - width);
    const auto length = static_cast<size_t>(end - start);
    if (length > few || out->end - out->next < static_cast<ptrdiff_t>(few))
        return puttext(out, start, length);
    memcpy(out->next, start, few); // a constant length needs no call
    out->next += length;
}

void putaligned(OUTPUT *out, std::string_view text, int width) {
    putspaces(out, width - static_cast<int64_t>(text.size()));
    puttext(out, text.data(), text.size());
}

void putlinkstart(OUTPUT *out, const _tagfile *file, int level) {
    putspaces(out, 4 * (int64_t{level} + 1));
    puttexts(out, file->name, " (");
}

void putlinkend(OUTPUT *out, const _tagfile *file, const _tagsymbol *symbol) {
    putnumber(out, file->size);
    puttexts(out, ") [", symname(symbol), "]\n");
}
