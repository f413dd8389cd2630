/* A game from start to goal, frame by frame. */
#include "game/game.h"

/* The profiler is asked only where a game has linked it. */
extern void profiler_mark(const char *what) WEAK;

static struct camera camera;
static int won;

static void on_goal(enum event event, s32 value) {
    (void)event;
    won = value == EVENT_GOAL;
}

void session_start(void) {
    struct vector entrance = {FIXED(1), 0, FIXED(1)};
    clock_reset();
    random_seed(clock_elapsed());
    score_listen();
    effects_listen();
    event_subscribe(EVENT_TRIGGER, on_goal);
    won = !level_load(level_first);
    player_place(entrance);
    music_play("ceg jgec");
}

static void draw(void) {
    int angle;
    struct vector eye = player_eye(&angle);
    camera_look(&camera, eye, angle);
    framebuffer_clear(0);
    scenery_draw(&camera);
    score_draw();
    framebuffer_present();
}

/* Whether there is a next frame. */
int session_frame(void) {
    pad_update();
    player_steer();
    entity_each(entity_step);
    event_dispatch();
    if (profiler_mark)
        profiler_mark("moved");
    draw();
    if (profiler_mark)
        profiler_mark("drawn");
    music_tick();
    return !won;
}
