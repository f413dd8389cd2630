/* Functions of the machine. These do nothing, and a game's own take precedence. */
#include "core/core.h"

static u32 fake_ticks;

WEAK void platform_write(const char *text, int length) {
    (void)text;
    (void)length;
}

WEAK void platform_halt(void) {
    for (;;)
        __asm__ volatile("");
}

WEAK u32 platform_ticks(void) {
    return ++fake_ticks;
}
