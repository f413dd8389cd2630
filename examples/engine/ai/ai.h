/* How monsters choose. */
#ifndef ENGINE_AI_H
#define ENGINE_AI_H

#include "world/world.h"

enum mood { MOOD_IDLE, MOOD_CHASE, MOOD_FLEE, MOODS };
typedef enum mood (*mood_action)(struct entity *entity);

/* brain.c */
void brain_think(struct entity *entity);
HIDDEN void brain_scare(struct entity *entity);

/* moods.c */
extern const mood_action mood_actions[MOODS];

/* behave.c */
enum mood behave_idle(struct entity *entity);
enum mood behave_chase(struct entity *entity);
enum mood behave_flee(struct entity *entity);

#endif
