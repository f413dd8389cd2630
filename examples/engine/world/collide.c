/* Who touches whom; walls are slid along, one axis at a time. */
#include "world/world.h"

static int near(fixed a, fixed b) {
    return a - b < ONE / 2 && b - a < ONE / 2;
}

int collide_entities(const struct entity *a, const struct entity *b) {
    return near(a->place.x, b->place.x) && near(a->place.z, b->place.z);
}

void collide_move(struct entity *entity) {
    struct vector target = entity->place;
    struct entity *other;
    target.x += entity->speed.x;
    if (level_solid(target))
        target.x = entity->place.x;
    target.z += entity->speed.z;
    if (level_solid(target))
        target.z = entity->place.z;
    entity->place = target;
    other = entity_nearest(target, entity);
    if (other && collide_entities(entity, other))
        damage_entity(other, 1);
}
