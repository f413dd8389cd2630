/* The functions that a game calls. */
#ifndef ENGINE_GAME_H
#define ENGINE_GAME_H

void session_start(void);
int session_frame(void);

#endif
