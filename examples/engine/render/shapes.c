/* Meshes that every level has at hand. Data only. */
#include "render/render.h"

static const struct vector corners[8] = {
    {-ONE, -ONE, -ONE}, {ONE, -ONE, -ONE}, {ONE, ONE, -ONE}, {-ONE, ONE, -ONE},
    {-ONE, -ONE, ONE},  {ONE, -ONE, ONE},  {ONE, ONE, ONE},  {-ONE, ONE, ONE},
};
static const u8 edges[12][2] = {
    {0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7},
};
const struct mesh shape_cube = {corners, edges, COUNT(corners), COUNT(edges)};
