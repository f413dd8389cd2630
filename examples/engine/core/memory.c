/* Fills and copies; the compiler calls these for structures too. */
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
