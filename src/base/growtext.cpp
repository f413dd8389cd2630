#include "base/growtext.h"

#include "mem/galloc.h"

#include <cstring>

bool growreserve(GROWTEXT *text, int64_t bytes) {
    const int64_t before = text->capacity;
    if (!growarray(text->text, text->length, text->capacity, bytes - text->length))
        return false;
    if (text->capacity != before)
        text->text[text->length] = 0;
    return true;
}

bool growappend(GROWTEXT *text, const char *piece, int64_t length) {
    if (!growreserve(text, text->length + length + 1))
        return false;
    memcpy(text->text + text->length, piece, static_cast<size_t>(length));
    growcut(text, text->length + length);
    return true;
}

bool growappend(GROWTEXT *text, const char *piece) {
    return growappend(text, piece, static_cast<int64_t>(strlen(piece)));
}

bool growset(GROWTEXT *text, const char *piece) {
    const auto length = static_cast<int64_t>(strlen(piece));
    if (!growreserve(text, length + 1))
        return false;
    text->length = 0;
    return growappend(text, piece, length);
}

void growcut(GROWTEXT *text, int64_t length) {
    text->length = length;
    text->text[length] = 0;
}

void growfree(GROWTEXT *text) {
    grelease(text->text);
    *text = {};
}
