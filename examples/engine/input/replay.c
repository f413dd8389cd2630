/* Records the buttons of every frame, for a game that wants to show itself again. */
#include "input/input.h"

enum { FRAMES = 4096 };

static u8 *recorded;
static int count;

void replay_record(void) {
    if (!recorded)
        recorded = heap_take(FRAMES);
    if (count < FRAMES)
        recorded[count++] = (u8)pad_state();
}

void replay_play(int frame) {
    int i;
    if (frame < 0 || frame >= count)
        return;
    for (i = 0; i < BUTTONS; i++)
        pad_key(keymap_keys[i], (recorded[frame] >> i) & 1);
    pad_update();
}
