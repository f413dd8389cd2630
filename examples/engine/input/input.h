/* What the player does. */
#ifndef ENGINE_INPUT_H
#define ENGINE_INPUT_H

#include "core/core.h"

enum button { BUTTON_LEFT, BUTTON_RIGHT, BUTTON_UP, BUTTON_DOWN, BUTTON_FIRE, BUTTONS };

/* pad.c */
void pad_key(u8 key, int down);
void pad_update(void);
int pad_held(enum button button);
int pad_pressed(enum button button);
HIDDEN u32 pad_state(void);

/* keymap.c */
extern u8 keymap_keys[BUTTONS];

/* replay.c */
void replay_record(void);
void replay_play(int frame);

#endif
