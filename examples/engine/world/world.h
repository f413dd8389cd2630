/* The level and who is in it. */
#ifndef ENGINE_WORLD_H
#define ENGINE_WORLD_H

#include "render/render.h"

enum { LEVEL_SIZE = 16 };

struct entity {
    struct entity *next;
    struct vector place, speed;
    s32 health;
    int mood;
    u8 colour;
};
typedef void (*entity_visitor)(struct entity *entity);

/* entity.c */
struct entity *entity_spawn(struct vector place, u8 colour);
void entity_remove(struct entity *entity);
void entity_each(entity_visitor visitor);
struct entity *entity_nearest(struct vector place, const struct entity *but);
void entity_step(struct entity *entity);

/* level.c */
int level_load(const char *map);
char level_tile(int x, int y);
int level_solid(struct vector place);

/* levels.c: maps of LEVEL_SIZE rows, each of LEVEL_SIZE letters. */
extern const char level_first[];

/* collide.c */
int collide_entities(const struct entity *a, const struct entity *b);
void collide_move(struct entity *entity);

/* damage.c */
void damage_entity(struct entity *entity, s32 points);
PROTECTED void damage_near(struct vector place, s32 points);

/* trigger.c */
void trigger_place(int x, int y, s32 value);
void trigger_check(struct entity *entity);

/* scenery.c */
void scenery_draw(const struct camera *camera);

#endif
