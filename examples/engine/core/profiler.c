/* Times between marks. Linked only when a game asks for the report: the frame knows it weakly. */
#include "core/core.h"

enum { MARKS = 32 };

static struct {
    const char *what;
    u32 at;
} marks[MARKS];
static int count;

void profiler_mark(const char *what) {
    if (count < MARKS) {
        marks[count].what = what;
        marks[count++].at = clock_elapsed();
    }
}

void profiler_report(void) {
    int i;
    for (i = 1; i < count; i++) {
        console_print(marks[i].what);
        console_print(" ");
        console_number((s32)(marks[i].at - marks[i - 1].at));
        console_print("\n");
    }
    count = 0;
}
