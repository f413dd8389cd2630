#include "report/output.h"

#include "symbols/options.h"

namespace {

char buffer[OUTPUTSIZE];

struct DIGITS {
    char text[24];
};

// Returns the number's digits, which are at the end of *digits.
std::string_view digitsof(int64_t number, DIGITS *digits) {
    char *const end = digits->text + sizeof digits->text;
    char *p = end;
    uint64_t rest = number < 0 ? 0 - static_cast<uint64_t>(number) : static_cast<uint64_t>(number);
    do {
        *--p = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0)
        *--p = '-';
    return {p, end};
}

} // namespace

OUTPUT beginoutput(FILE *stream) {
    return {stream, buffer, buffer + sizeof buffer};
}

void flushoutput(OUTPUT *out) {
    fwrite(buffer, 1, static_cast<size_t>(out->next - buffer), out->stream);
    out->next = buffer;
}

void putlong(OUTPUT *out, const char *text, size_t length) {
    flushoutput(out);
    if (length >= sizeof buffer) {
        fwrite(text, 1, length, out->stream);
        return;
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
    DIGITS digits;
    putaligned(out, digitsof(number, &digits), width);
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
