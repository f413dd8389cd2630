/* The field and its entities. */
#ifndef ENGINE_WORLD_H
#define ENGINE_WORLD_H

#include "math/fixmath.h"

enum { FIELD_SIZE = 16 };

struct entity {
    struct entity *next;
    fixed x, y, speed_x, speed_y;
    s32 health;
    int mood;
};

/* entity.c */
struct entity *entity_spawn(fixed x, fixed y);
void entity_remove(struct entity *entity);
struct entity *entity_nearest(const struct entity *entity);
void entity_step(void);

/* collide.c */
int collide_entities(const struct entity *a, const struct entity *b);
void collide_move(struct entity *entity);

/* damage.c */
void damage_entity(struct entity *entity, s32 points);
PROTECTED void damage_all(s32 points);

/* trigger.c */
void trigger_place(fixed x, fixed y, s32 value);
void trigger_check(const struct entity *entity);

#endif
