/* Ways through the map: a flood from the goal, then downhill. */
#include "ai/ai.h"

enum { CELLS = LEVEL_SIZE * LEVEL_SIZE };

static const signed char around[4][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};

static void flood(u8 *far, int goal) {
    u16 *queue = heap_take(CELLS * sizeof *queue);
    int first = 0, last = 0, way;
    memset(far, 255, CELLS);
    far[goal] = 0;
    queue[last++] = (u16)goal;
    while (first < last) {
        int cell = queue[first++];
        for (way = 0; way < 4; way++) {
            int x = cell % LEVEL_SIZE + around[way][0];
            int y = cell / LEVEL_SIZE + around[way][1];
            if (level_tile(x, y) != '#' && far[y * LEVEL_SIZE + x] == 255) {
                far[y * LEVEL_SIZE + x] = (u8)(far[cell] + 1);
                queue[last++] = (u16)(y * LEVEL_SIZE + x);
            }
        }
    }
    heap_give(queue);
}

/* The number of steps written (0 right, 1 down, 2 left, 3 up), or -1 when there is no way. */
int route_find(int from_x, int from_y, int to_x, int to_y, u8 *steps, int room) {
    u8 *far;
    int count = 0;
    int x = from_x, y = from_y;
    if (level_tile(from_x, from_y) == '#' || level_tile(to_x, to_y) == '#')
        return -1;
    far = heap_take(CELLS);
    flood(far, to_y * LEVEL_SIZE + to_x);
    if (far[y * LEVEL_SIZE + x] == 255)
        count = -1;
    while (count >= 0 && count < room && far[y * LEVEL_SIZE + x] > 0) {
        int way = 0;
        while (level_tile(x + around[way][0], y + around[way][1]) == '#' ||
               far[(y + around[way][1]) * LEVEL_SIZE + x + around[way][0]] >=
                   far[y * LEVEL_SIZE + x])
            way++;
        steps[count++] = (u8)way;
        x += around[way][0];
        y += around[way][1];
    }
    heap_give(far);
    return count;
}

int route_clear(struct vector from, struct vector to) {
    struct vector step = vector_scale(vector_subtract(to, from), ONE / 16);
    int i;
    for (i = 0; i < 16; i++) {
        if (level_solid(from))
            return 0;
        from = vector_add(from, step);
    }
    return 1;
}
