#include "report/output.h"

#include <algorithm>
#include <charconv>

namespace {

char buffer[OUTPUTSIZE + OUTPUTFEW];

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
    constexpr int64_t most = 99999999;
    char text[few + OUTPUTFEW];
    if (width > few || number < 0 || number > most)
        return putaligned(out, {text, std::to_chars(text, text + sizeof text, number).ptr}, width);
    // The same steps for each number: they are predicted.
    auto rest = static_cast<uint32_t>(number);
    for (int i = few - 1; i >= 0; --i, rest /= 10)
        text[i] = static_cast<char>(rest != 0 || i == few - 1 ? '0' + rest % 10 : ' ');
    int length = std::max(width, 1);
    while (length < few && text[few - 1 - length] != ' ')
        ++length;
    putfew(out, text + few - length, length);
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
