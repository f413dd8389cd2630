/* The end of a run. The console may panic in turn, so a second panic only halts. */
#include "core/core.h"

static int panicking;

void panic(const char *reason) {
    if (!panicking++) {
        console_print("PANIC: ");
        console_line(reason);
        if (!heap_check())
            console_line("(the heap is damaged)");
    }
    platform_halt();
}

void panic_unless(int holds, const char *reason) {
    if (!holds)
        panic(reason);
}
