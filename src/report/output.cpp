#include "report/output.h"

#include "symbols/options.h"

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
    size_t space = 0;
    while ((space = static_cast<size_t>(out->end - out->next)) < length) {
        memcpy(out->next, text, space);
        out->next = out->end;
        flushoutput(out);
        text += space;
        length -= space;
    }
    memcpy(out->next, text, length);
    out->next += length;
}

void putspaces(OUTPUT *out, int64_t count) {
    while (count > out->end - out->next) {
        const int64_t piece = out->end - out->next;
        memset(out->next, ' ', static_cast<size_t>(piece));
        out->next += piece;
        count -= piece;
        flushoutput(out);
    }
    if (count <= 0)
        return;
    memset(out->next, ' ', static_cast<size_t>(count));
    out->next += count;
}

void putnumber(OUTPUT *out, int64_t number) {
    putaligned(out, number, 0);
}

void putaligned(OUTPUT *out, int64_t number, int width) {
    char digits[24];
    const char *end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    putaligned(out, std::string_view(digits, end), width);
}

void putaligned(OUTPUT *out, std::string_view text, int width) {
    putspaces(out, width - static_cast<int64_t>(text.size()));
    puttext(out, text.data(), text.size());
}

void putheading(OUTPUT *out, const char *title) {
    if (OPTverbose > 1)
        puttexts(out, "\n", preheader, title, postheader);
}

void putlinkstart(OUTPUT *out, const _tagfile *file, int level) {
    putspaces(out, 4 * (int64_t{level} + 1));
    puttexts(out, file->name, " (");
}

void putlinkend(OUTPUT *out, const _tagfile *file, const _tagsymbol *symbol) {
    putnumber(out, file->size);
    puttexts(out, ") [", symname(symbol), "]\n");
}
