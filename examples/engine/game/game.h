/* What a game calls: start, one frame after the other, the menu and the score. */
#ifndef ENGINE_GAME_H
#define ENGINE_GAME_H

#include "audio/audio.h"
#include "input/input.h"
#include "world/world.h"

/* session.c */
void session_start(void);
int session_frame(void);

/* player.c */
void player_place(struct vector place);
void player_steer(void);
struct vector player_eye(int *angle);

/* score.c */
void score_listen(void);
s32 score_points(void);
void score_draw(void);

/* menu.c */
struct menu_item {
    const char *label;
    void (*chosen)(void);
};
int menu_step(const struct menu_item *items, int count, int at);
int menu_title(int at);

#endif
