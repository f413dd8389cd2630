/* Block copies and fills; the compiler calls these for structure copies too. */
#include "core/core.h"

void *memset(void *to, int value, bytes size) {
    volatile u8 *byte = to;
    while (size-- > 0)
        *byte++ = (u8)value;
    return to;
}

void *memcpy(void *to, const void *from, bytes size) {
    volatile u8 *target = to;
    const u8 *source = from;
    while (size-- > 0)
        *target++ = *source++;
    return to;
}

void *memmove(void *to, const void *from, bytes size) {
    volatile u8 *target = to;
    const u8 *source = from;
    if ((const u8 *)to < source)
        return memcpy(to, from, size);
    while (size-- > 0)
        target[size] = source[size];
    return to;
}

int memcmp(const void *left, const void *right, bytes size) {
    const u8 *a = left;
    const u8 *b = right;
    for (; size > 0; size--, a++, b++)
        if (*a != *b)
            return *a < *b ? -1 : 1;
    return 0;
}
