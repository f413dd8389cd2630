/* Times between marks. The session refers to it weakly, so it is linked only for the report. */
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
        marks[count++].at = platform_ticks();
    }
}

void profiler_report(void) {
    int i;
    for (i = 1; i < count; i++) {
        console_print(marks[i].what);
        console_number((s32)(marks[i].at - marks[i - 1].at));
        console_print("\n");
    }
    count = 0;
}
