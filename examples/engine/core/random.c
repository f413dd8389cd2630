/* One xorshift generator: the same seed plays the same game. */
#include "core/core.h"

static u32 state = 2463534242u;

void random_seed(u32 seed) {
    state = seed ? seed : 1;
}

u32 random_next(void) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state;
}

s32 random_range(s32 least, s32 most) {
    if (most <= least)
        return least;
    return least + (s32)(random_next() % ((u32)most - (u32)least + 1));
}
