#include "tool/output.h"

namespace {

constexpr int DIGITSSIZE = 24;

// Writes the digits to the end of the buffer and returns where they begin.
char *digitsof(int64_t number, char *buffer) {
    char *p = buffer + DIGITSSIZE - 1;
    *p = 0;
    uint64_t rest = number < 0 ? 0 - static_cast<uint64_t>(number) : static_cast<uint64_t>(number);
    do {
        *--p = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0)
        *--p = '-';
    return p;
}

} // namespace

void putnumber(FILE *out, int64_t number) {
    char buffer[DIGITSSIZE];
    putchars(out, digitsof(number, buffer));
}

void putaligned(FILE *out, int64_t number, int width) {
    char buffer[DIGITSSIZE];
    putaligned(out, digitsof(number, buffer), width);
}

void putaligned(FILE *out, const char *text, int width) {
    putspaces(out, width - static_cast<int64_t>(strlen(text)));
    putchars(out, text);
}

void putspaces(FILE *out, int64_t count) {
    static const char spaces[] = "                                                                ";
    constexpr int64_t most = sizeof spaces - 1;
    for (; count > 0; count -= most)
        fwrite_unlocked(spaces, 1, static_cast<size_t>(count < most ? count : most), out);
}
