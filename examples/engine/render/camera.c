/* From the world to the screen. */
#include "render/render.h"

enum { NEAR = ONE / 4 };

void camera_look(struct camera *camera, struct vector from, int angle) {
    matrix_turn(&camera->view, -angle);
    camera->place = from;
}

/* Whether the point is before the camera; only then are x and y set. */
int camera_project(const struct camera *camera, struct vector point, int *x, int *y) {
    struct vector seen = matrix_apply(&camera->view, vector_subtract(point, camera->place));
    if (seen.z < NEAR)
        return 0;
    *x = SCREEN_WIDTH / 2 + WHOLE(fixed_divide(seen.x, seen.z) * (SCREEN_WIDTH / 2));
    *y = SCREEN_HEIGHT / 2 - WHOLE(fixed_divide(seen.y, seen.z) * (SCREEN_WIDTH / 2));
    return 1;
}
