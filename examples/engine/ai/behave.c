/* The moods' actions: each sets a speed and names the next mood. */
#include "ai/ai.h"

enum { PACE = ONE / 8 };

static void walk(struct entity *entity, int angle) {
    entity->speed.x = fixed_multiply(PACE, trig_cosine(angle));
    entity->speed.z = fixed_multiply(PACE, trig_sine(angle));
}

static int angle_to(const struct entity *entity, const struct entity *other) {
    return trig_angle(other->place.x - entity->place.x, other->place.z - entity->place.z);
}

enum mood behave_idle(struct entity *entity) {
    struct entity *other = entity_nearest(entity->place, entity);
    if (random_range(0, 7) == 0)
        walk(entity, random_range(0, 255));
    return other && route_clear(entity->place, other->place) ? MOOD_CHASE : MOOD_IDLE;
}

enum mood behave_chase(struct entity *entity) {
    struct entity *other = entity_nearest(entity->place, entity);
    if (!other)
        return MOOD_IDLE;
    walk(entity, angle_to(entity, other));
    return MOOD_CHASE;
}

enum mood behave_flee(struct entity *entity) {
    struct entity *other = entity_nearest(entity->place, entity);
    if (!other)
        return MOOD_IDLE;
    walk(entity, angle_to(entity, other) + 128);
    return MOOD_FLEE;
}
