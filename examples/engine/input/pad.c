/* Buttons held now and in the frame before. */
#include "input/input.h"

static u32 incoming, held, before;

void pad_key(u8 key, int down) {
    int i;
    for (i = 0; i < BUTTONS; i++) {
        if (keymap_keys[i] != key)
            continue;
        if (down)
            incoming |= 1u << i;
        else
            incoming &= ~(1u << i);
    }
}

void pad_update(void) {
    before = held;
    held = incoming;
}

int pad_held(enum button button) {
    return (held >> button) & 1;
}

int pad_pressed(enum button button) {
    return ((held & ~before) >> button) & 1;
}

u32 pad_state(void) {
    return held;
}
