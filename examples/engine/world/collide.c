/* Moves within the field, and entities that touch. */
#include "world/world.h"

int collide_entities(const struct entity *a, const struct entity *b) {
    return fixed_distance(a->x, b->x) < ONE / 2 && fixed_distance(a->y, b->y) < ONE / 2;
}

void collide_move(struct entity *entity) {
    struct entity *other;
    entity->x = fixed_clamp(entity->x + entity->speed_x, 0, FIXED(FIELD_SIZE));
    entity->y = fixed_clamp(entity->y + entity->speed_y, 0, FIXED(FIELD_SIZE));
    other = entity_nearest(entity);
    if (other && collide_entities(entity, other))
        damage_entity(other, 1);
}
