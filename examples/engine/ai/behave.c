/* The moods' actions: each sets a speed and returns the next mood. */
#include "ai/ai.h"

enum { PACE = ONE / 8 };

static void walk(struct entity *entity, const struct entity *to, int turn) {
    int angle = trig_angle(to->x - entity->x, to->y - entity->y) + turn;
    entity->speed_x = fixed_multiply(PACE, trig_cosine(angle));
    entity->speed_y = fixed_multiply(PACE, trig_sine(angle));
}

enum mood behave_idle(struct entity *entity) {
    return entity_nearest(entity) ? MOOD_CHASE : MOOD_IDLE;
}

enum mood behave_chase(struct entity *entity) {
    struct entity *other = entity_nearest(entity);
    if (!other)
        return MOOD_IDLE;
    walk(entity, other, 0);
    return MOOD_CHASE;
}

enum mood behave_flee(struct entity *entity) {
    struct entity *other = entity_nearest(entity);
    if (!other)
        return MOOD_IDLE;
    walk(entity, other, 128);
    return MOOD_FLEE;
}
