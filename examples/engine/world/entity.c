/* Everybody: one list over one pool. */
#include "ai/ai.h"
#include "world/world.h"

enum { MOST = 64 };

static struct pool pool;
static struct entity *first;

struct entity *entity_spawn(struct vector place, u8 colour) {
    struct entity *entity;
    if (!pool.first)
        pool_open(&pool, sizeof *entity, MOST);
    entity = pool_take(&pool);
    if (!entity)
        return NOTHING;
    entity->place = place;
    entity->health = 100;
    entity->colour = colour;
    entity->next = first;
    first = entity;
    event_post(EVENT_SPAWN, colour);
    return entity;
}

void entity_remove(struct entity *entity) {
    struct entity **link = &first;
    while (*link && *link != entity)
        link = &(*link)->next;
    if (*link) {
        *link = entity->next;
        pool_give(&pool, entity);
    }
}

void entity_each(entity_visitor visitor) {
    struct entity *entity = first;
    while (entity) {
        struct entity *next = entity->next;
        visitor(entity);
        entity = next;
    }
}

struct entity *entity_nearest(struct vector place, const struct entity *but) {
    struct entity *nearest = NOTHING;
    fixed least = 0x7fffffff;
    struct entity *entity;
    for (entity = first; entity; entity = entity->next) {
        fixed distance = vector_length(vector_subtract(entity->place, place));
        if (entity != but && distance < least) {
            least = distance;
            nearest = entity;
        }
    }
    return nearest;
}

void entity_step(struct entity *entity) {
    brain_think(entity);
    collide_move(entity);
    trigger_check(entity);
}
