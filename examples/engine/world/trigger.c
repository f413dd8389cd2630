/* Places that post an event when somebody stands on them. */
#include "world/world.h"

enum { TRIGGERS = 16 };

static struct {
    int x, y;
    s32 value;
} triggers[TRIGGERS];
static int count;

void trigger_place(int x, int y, s32 value) {
    panic_unless(count < TRIGGERS, "too many triggers");
    triggers[count].x = x;
    triggers[count].y = y;
    triggers[count++].value = value;
}

void trigger_check(struct entity *entity) {
    int i;
    for (i = 0; i < count; i++)
        if (triggers[i].x == WHOLE(entity->place.x) && triggers[i].y == WHOLE(entity->place.z))
            event_post(EVENT_TRIGGER, triggers[i].value);
}
