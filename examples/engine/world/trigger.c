/* Places that post an event when an entity is there. */
#include "world/world.h"

enum { TRIGGERS = 16 };

static struct {
    fixed x, y;
    s32 value;
} triggers[TRIGGERS];
static int count;

void trigger_place(fixed x, fixed y, s32 value) {
    panic_unless(count < TRIGGERS, "too many triggers");
    triggers[count].x = x;
    triggers[count].y = y;
    triggers[count++].value = value;
}

void trigger_check(const struct entity *entity) {
    int i;
    for (i = 0; i < count; i++)
        if (fixed_distance(triggers[i].x, entity->x) + fixed_distance(triggers[i].y, entity->y) <
            ONE)
            event_post(EVENT_TRIGGER, triggers[i].value);
}
