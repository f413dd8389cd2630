/* NUL-terminated texts without a C library. */
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

int text_copy(char *to, const char *from, int size) {
    int length = 0;
    for (; length + 1 < size && from[length]; length++)
        to[length] = from[length];
    to[length] = 0;
    return length;
}

/* Writes at most 12 characters. */
int text_number(char *to, s32 value) {
    char reversed[10];
    u32 rest = value < 0 ? 0u - (u32)value : (u32)value;
    int digits = 0, length = 0;
    do {
        reversed[digits++] = (char)('0' + rest % 10);
        rest /= 10;
    } while (rest > 0);
    if (value < 0)
        to[length++] = '-';
    while (digits > 0)
        to[length++] = reversed[--digits];
    to[length] = 0;
    return length;
}
