/* Pictures: one byte per pixel, colours by palette. */
#ifndef ENGINE_RENDER_H
#define ENGINE_RENDER_H

#include "math/fixmath.h"

enum { SCREEN_WIDTH = 160, SCREEN_HEIGHT = 120 };

struct sprite {
    const u8 *pixels;
    int width, height;
};
struct mesh {
    const struct vector *points;
    const u8 (*edges)[2];
    int point_count, edge_count;
};
struct camera {
    struct matrix view;
    struct vector place;
};

/* framebuffer.c */
void framebuffer_clear(u8 colour);
void framebuffer_pixel(int x, int y, u8 colour);
void framebuffer_line(int x0, int y0, int x1, int y1, u8 colour);
void framebuffer_present(void);
HIDDEN u8 *framebuffer_row(int y);

/* palette.c */
extern u32 palette_colours[16];
void palette_set(int index, u32 colour);
void palette_fade(fixed brightness);

/* shade.c: looks colours up without changing them. */
u8 shade_darker(u8 colour);
u8 shade_distance(u8 colour, fixed distance);

/* sprite.c */
void sprite_draw(const struct sprite *sprite, int x, int y);
void sprite_tint(const struct sprite *sprite, int x, int y, u8 colour);

/* font.c, glyphs.c */
extern const u8 glyph_rows[][5];
extern const char glyph_order[];
int font_width(const char *text);
void font_draw(const char *text, int x, int y, u8 colour);
void font_draw_number(s32 value, int x, int y, u8 colour);

/* camera.c */
void camera_look(struct camera *camera, struct vector from, int angle);
int camera_project(const struct camera *camera, struct vector point, int *x, int *y);

/* mesh.c, shapes.c */
extern const struct mesh shape_cube;
void mesh_draw(const struct mesh *mesh, const struct camera *camera, u8 colour);
PROTECTED void mesh_draw_marker(const struct camera *camera);

#endif
