/* Calls the mood through a table. The table is data, so the symbols show no call. */
#include "ai/ai.h"

void brain_think(struct entity *entity) {
    panic_unless(entity->mood >= 0 && entity->mood < MOODS, "no such mood");
    entity->mood = (int)mood_actions[entity->mood](entity);
    if (entity->health < 20)
        brain_scare(entity);
}

void brain_scare(struct entity *entity) {
    entity->mood = MOOD_FLEE;
}
