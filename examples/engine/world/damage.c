/* Hurting and dying. */
#include "world/world.h"

void damage_entity(struct entity *entity, s32 points) {
    event_post(EVENT_HIT, points);
    entity->health -= points;
    if (entity->health <= 0) {
        event_post(EVENT_DEATH, entity->colour);
        entity_remove(entity);
    }
}

void damage_near(struct vector place, s32 points) {
    struct entity *entity = entity_nearest(place, NOTHING);
    if (entity)
        damage_entity(entity, points);
}
