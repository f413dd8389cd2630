/* Sixteen colours, and their fading. Others read the colours without calling anything here. */
#include "render/render.h"

u32 palette_colours[16] = {
    0x000000, 0x1d2b53, 0x7e2553, 0x008751, 0xab5236, 0x5f574f, 0xc2c3c7, 0xfff1e8,
    0xff004d, 0xffa300, 0xffec27, 0x00e436, 0x29adff, 0x83769c, 0xff77a8, 0xffccaa,
};

void palette_set(int index, u32 colour) {
    palette_colours[index & 15] = colour;
}

static u32 fade_channel(u32 colour, int shift, fixed brightness) {
    fixed channel = (fixed)((colour >> shift) & 255);
    return (u32)fixed_clamp(fixed_multiply(channel, brightness), 0, 255) << shift;
}

void palette_fade(fixed brightness) {
    int i;
    for (i = 0; i < 16; i++) {
        u32 colour = palette_colours[i];
        palette_colours[i] = fade_channel(colour, 16, brightness) |
                             fade_channel(colour, 8, brightness) |
                             fade_channel(colour, 0, brightness);
    }
}
