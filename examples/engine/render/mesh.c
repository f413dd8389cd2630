/* Wire frames. */
#include "render/render.h"

static void draw_edge(const struct mesh *mesh, const u8 *edge, const struct camera *camera,
                      u8 colour) {
    int x0, y0, x1, y1;
    if (camera_project(camera, mesh->points[edge[0]], &x0, &y0) &&
        camera_project(camera, mesh->points[edge[1]], &x1, &y1))
        framebuffer_line(x0, y0, x1, y1, colour);
}

void mesh_draw(const struct mesh *mesh, const struct camera *camera, u8 colour) {
    fixed distance = vector_length(vector_subtract(mesh->points[0], camera->place));
    int i;
    colour = shade_distance(colour, distance);
    for (i = 0; i < mesh->edge_count; i++)
        draw_edge(mesh, mesh->edges[i], camera, colour);
}

void mesh_draw_marker(const struct camera *camera) {
    mesh_draw(&shape_cube, camera, 8);
}
