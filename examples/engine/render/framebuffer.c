/* The picture being drawn. */
#include "render/render.h"

static u8 pixels[SCREEN_HEIGHT][SCREEN_WIDTH];

u8 *framebuffer_row(int y) {
    return pixels[y];
}

void framebuffer_clear(u8 colour) {
    memset(pixels, colour, sizeof pixels);
}

void framebuffer_pixel(int x, int y, u8 colour) {
    if (x >= 0 && x < SCREEN_WIDTH && y >= 0 && y < SCREEN_HEIGHT)
        pixels[y][x] = colour;
}

static int distance(int a, int b) {
    return a < b ? b - a : a - b;
}

void framebuffer_line(int x0, int y0, int x1, int y1, u8 colour) {
    int across = distance(x0, x1);
    int down = distance(y0, y1);
    int error = across - down;
    for (;;) {
        int twice = 2 * error;
        framebuffer_pixel(x0, y0, colour);
        if (x0 == x1 && y0 == y1)
            return;
        if (twice > -down) {
            error -= down;
            x0 += x0 < x1 ? 1 : -1;
        }
        if (twice < across) {
            error += across;
            y0 += y0 < y1 ? 1 : -1;
        }
    }
}

void framebuffer_present(void) {
    platform_present(pixels[0], SCREEN_WIDTH, SCREEN_HEIGHT);
}
