/* Flat pictures; colour 0 is see-through. */
#include "render/render.h"

static void draw(const struct sprite *sprite, int x, int y, u8 tint) {
    int row, column;
    for (row = 0; row < sprite->height; row++) {
        const u8 *pixel = sprite->pixels + row * sprite->width;
        for (column = 0; column < sprite->width; column++, pixel++)
            if (*pixel)
                framebuffer_pixel(x + column, y + row, tint ? tint : *pixel);
    }
}

void sprite_draw(const struct sprite *sprite, int x, int y) {
    draw(sprite, x, y, 0);
}

void sprite_tint(const struct sprite *sprite, int x, int y, u8 colour) {
    draw(sprite, x, y, colour);
}
