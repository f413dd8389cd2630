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

void putnumber(OUTPUT *out, int64_t number, int width) {
    constexpr int few = 8;
    constexpr int64_t most = 99999999;
    if (width != few || number < 0 || number > most) {
        char text[24];
        return putaligned(out, {text, std::to_chars(text, text + sizeof text, number).ptr}, width);
    }
    // The same steps for each number: they are predicted.
    char *text = makeroom(out, few);
    auto rest = static_cast<uint32_t>(number);
    for (int i = few - 1; i >= 0; --i, rest /= 10)
        text[i] = static_cast<char>(rest != 0 || i == few - 1 ? '0' + rest % 10 : ' ');
    out->next += few;
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
