/* Text on the screen; a letter without a glyph is a blank. */
#include "render/render.h"

enum { ADVANCE = 4, GLYPH_WIDTH = 3, GLYPH_HEIGHT = 5 };

static const u8 *glyph(char letter) {
    int i = 0;
    while (glyph_order[i] && glyph_order[i] != ' ' && glyph_order[i] != letter)
        i++;
    return glyph_rows[i];
}

int font_width(const char *text) {
    return text_length(text) * ADVANCE;
}

void font_draw(const char *text, int x, int y, u8 colour) {
    for (; *text; text++, x += ADVANCE) {
        const u8 *rows = glyph(*text);
        int row, column;
        for (row = 0; row < GLYPH_HEIGHT; row++)
            for (column = 0; column < GLYPH_WIDTH; column++)
                if (rows[row] & (4 >> column))
                    framebuffer_pixel(x + column, y + row, colour);
    }
}

void font_draw_number(s32 value, int x, int y, u8 colour) {
    char digits[12];
    text_number(digits, value);
    font_draw(digits, x, y, colour);
}
