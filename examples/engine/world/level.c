/* The map: '#' is wall, 'm' a monster's place, 'g' the goal. */
#include "world/world.h"

static char tiles[LEVEL_SIZE][LEVEL_SIZE + 1];

static void place_monster(int x, int y) {
    struct vector place = {FIXED(x), 0, FIXED(y)};
    entity_spawn(place, 8);
}

int level_load(const char *map) {
    int x, y;
    if (text_length(map) != LEVEL_SIZE * LEVEL_SIZE) {
        console_line("level: the map has a wrong size");
        return 0;
    }
    for (y = 0; y < LEVEL_SIZE; y++) {
        text_copy(tiles[y], map + y * LEVEL_SIZE, LEVEL_SIZE + 1);
        for (x = 0; x < LEVEL_SIZE; x++) {
            if (tiles[y][x] == 'm')
                place_monster(x, y);
            if (tiles[y][x] == 'g')
                trigger_place(x, y, EVENT_GOAL);
        }
    }
    return 1;
}

char level_tile(int x, int y) {
    if (x < 0 || x >= LEVEL_SIZE || y < 0 || y >= LEVEL_SIZE)
        return '#';
    return tiles[y][x];
}

int level_solid(struct vector place) {
    return level_tile(WHOLE(place.x), WHOLE(place.z)) == '#';
}
