/* Game time in ticks: it stands still while the game is paused. */
#include "core/core.h"

static u32 started;
static u32 paused_at;
static int is_paused;

void clock_reset(void) {
    started = platform_ticks();
    is_paused = 0;
}

u32 clock_elapsed(void) {
    return (is_paused ? paused_at : platform_ticks()) - started;
}

void clock_pause(int paused) {
    if (paused && !is_paused)
        paused_at = platform_ticks();
    if (!paused && is_paused)
        started += platform_ticks() - paused_at;
    is_paused = paused;
}
