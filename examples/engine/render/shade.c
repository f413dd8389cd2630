/* Darker colours of the palette that is set, found by brightness. */
#include "render/render.h"

static u32 brightness(u32 colour) {
    return ((colour >> 16) & 255) + ((colour >> 8) & 255) + (colour & 255);
}

u8 shade_darker(u8 colour) {
    u32 limit = brightness(palette_colours[colour & 15]);
    u32 best = 0;
    u8 darker = 0;
    u8 i;
    for (i = 0; i < 16; i++) {
        u32 here = brightness(palette_colours[i]);
        if (here < limit && here > best) {
            best = here;
            darker = i;
        }
    }
    return darker;
}

u8 shade_distance(u8 colour, fixed distance) {
    for (; distance > FIXED(16); distance -= FIXED(16))
        colour = shade_darker(colour);
    return colour;
}
