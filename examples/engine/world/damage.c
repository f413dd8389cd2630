/* Hits and deaths. */
#include "world/world.h"

void damage_entity(struct entity *entity, s32 points) {
    event_post(EVENT_HIT, points);
    entity->health -= points;
    if (entity->health <= 0) {
        event_post(EVENT_DEATH, points);
        entity_remove(entity);
    }
}

void damage_all(s32 points) {
    struct entity centre = {0};
    struct entity *entity;
    while ((entity = entity_nearest(&centre)))
        damage_entity(entity, points);
}
