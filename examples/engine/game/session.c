/* A game from start to goal, frame by frame. */
#include "audio/audio.h"
#include "game/game.h"
#include "world/world.h"

/* Called only in a game that links the profiler. */
extern void profiler_mark(const char *what) WEAK;

static int won;

static void on_goal(enum event event, s32 value) {
    (void)event;
    won = value == EVENT_GOAL;
}

void session_start(void) {
    int monster;
    event_subscribe(EVENT_TRIGGER, on_goal);
    trigger_place(FIXED(14), FIXED(14), EVENT_GOAL);
    for (monster = 0; monster <= config_get("difficulty"); monster++)
        entity_spawn(FIXED(4 * monster), FIXED(8));
    music_play("ceg jgec");
    won = 0;
}

/* Returns whether there is a next frame. */
int session_frame(void) {
    entity_step();
    if (profiler_mark)
        profiler_mark("moved");
    event_dispatch();
    music_tick();
    return !won;
}
