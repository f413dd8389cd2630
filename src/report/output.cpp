#include "report/output.h"

#include <algorithm>
#include <bit>
#include <charconv>

namespace {

char buffer[OUTPUTSIZE + OUTPUTFEW];

constexpr uint64_t allBytes = 0x0101010101010101;

// Returns the eight digits of a number, the first in the lowest byte. No step depends on the
// number, because a processor cannot predict its length.
uint64_t digitsof(uint32_t number) {
    const uint64_t fours = number / 10000 | uint64_t{number % 10000} << 32;
    const uint64_t hundreds = (fours * 10486 >> 20) & 0x7F0000007F;
    const uint64_t twos = hundreds | (fours - 100 * hundreds) << 16;
    const uint64_t tens = (twos * 103 >> 10) & 0x0F000F000F000F;
    return tens | (twos - 10 * tens) << 8;
}

} // namespace

OUTPUT beginoutput(FILE *stream) {
    return {stream, buffer, buffer + OUTPUTSIZE};
}

void flushoutput(OUTPUT *out) {
    const auto size = std::min(static_cast<size_t>(out->next - buffer), OUTPUTSIZE);
    fwrite(buffer, 1, size, out->stream);
    out->next -= size;
    memcpy(buffer, out->end, static_cast<size_t>(out->next - buffer));
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

void putnumber(OUTPUT *out, int64_t number, int width) {
    constexpr int few = 8;
    if (width > few || number < 0 || number > 99999999) {
        char any[24];
        return putaligned(out, {any, std::to_chars(any, any + sizeof any, number).ptr}, width);
    }
    uint64_t text = digitsof(static_cast<uint32_t>(number));
    const int zeros = std::min(std::countr_zero(text) / 8, few - 1);
    text |= allBytes * ' ' | (~uint64_t{0} << 8 * zeros & allBytes * ('0' ^ ' '));
    const int length = std::max(width, few - zeros);
    text >>= 8 * (few - length);
    char *next = out->next;
    for (int i = 0; i < few; ++i)
        next[i] = static_cast<char>(text >> 8 * i);
    putdone(out, length);
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
