/* NUL-terminated texts without a library beneath. */
#include "core/core.h"

int text_length(const char *text) {
    int length = 0;
    while (text[length])
        length++;
    return length;
}

int text_equal(const char *left, const char *right) {
    while (*left && *left == *right) {
        left++;
        right++;
    }
    return *left == *right;
}

int text_copy(char *to, const char *from, int room) {
    int length = 0;
    for (; length + 1 < room && from[length]; length++)
        to[length] = from[length];
    if (room > 0)
        to[length] = 0;
    return length;
}

static char *put_digits(char *to, u32 value) {
    char reversed[10];
    int digits = 0;
    do {
        reversed[digits++] = (char)('0' + value % 10);
        value /= 10;
    } while (value > 0);
    while (digits > 0)
        *to++ = reversed[--digits];
    return to;
}

/* Needs room for 12 characters. */
int text_number(char *to, s32 value) {
    char *end = to;
    if (value < 0)
        *end++ = '-';
    end = put_digits(end, value < 0 ? 0u - (u32)value : (u32)value);
    *end = 0;
    return (int)(end - to);
}

int text_hash(const char *text) {
    u32 hash = 2166136261u;
    for (; *text; text++)
        hash = (hash ^ (u8)*text) * 16777619u;
    return (int)(hash >> 1);
}
