/* All entities, in one list. */
#include "ai/ai.h"

static struct entity *first;

struct entity *entity_spawn(fixed x, fixed y) {
    struct entity *entity = heap_take(sizeof *entity);
    memset(entity, 0, sizeof *entity);
    entity->x = x;
    entity->y = y;
    entity->health = 100;
    entity->next = first;
    first = entity;
    event_post(EVENT_SPAWN, entity->health);
    return entity;
}

void entity_remove(struct entity *entity) {
    struct entity **link = &first;
    while (*link && *link != entity)
        link = &(*link)->next;
    if (*link) {
        *link = entity->next;
        heap_give(entity);
    }
}

struct entity *entity_nearest(const struct entity *entity) {
    struct entity *nearest = NOTHING;
    struct entity *other;
    fixed least = 0x7fffffff;
    for (other = first; other; other = other->next) {
        fixed distance = fixed_distance(other->x, entity->x) + fixed_distance(other->y, entity->y);
        if (other != entity && distance < least) {
            least = distance;
            nearest = other;
        }
    }
    return nearest;
}

void entity_step(void) {
    struct entity *entity;
    for (entity = first; entity; entity = entity->next) {
        brain_think(entity);
        collide_move(entity);
        trigger_check(entity);
    }
}
