/* Draws the walls as poles and everybody as a dot. */
#include "world/world.h"

static const struct camera *view;

static void draw_entity(struct entity *entity) {
    int x, y;
    if (camera_project(view, entity->place, &x, &y))
        framebuffer_pixel(x, y, entity->colour);
}

static void draw_pole(int column, int row) {
    struct vector foot = {FIXED(column), 0, FIXED(row)};
    struct vector top = {FIXED(column), ONE, FIXED(row)};
    int x0, y0, x1, y1;
    if (camera_project(view, foot, &x0, &y0) && camera_project(view, top, &x1, &y1))
        framebuffer_line(x0, y0, x1, y1, 5);
}

void scenery_draw(const struct camera *camera) {
    int x, y;
    view = camera;
    for (y = 0; y < LEVEL_SIZE; y++)
        for (x = 0; x < LEVEL_SIZE; x++)
            if (level_tile(x, y) == '#')
                draw_pole(x, y);
    entity_each(draw_entity);
    mesh_draw_marker(camera);
}
