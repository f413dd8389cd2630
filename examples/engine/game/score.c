/* Points for what happens. */
#include "game/game.h"

static s32 points;

static void on_event(enum event event, s32 value) {
    (void)value;
    points += event == EVENT_DEATH ? 100 : event == EVENT_GOAL ? 1000 : 1;
}

void score_listen(void) {
    points = 0;
    event_subscribe(EVENT_HIT, on_event);
    event_subscribe(EVENT_DEATH, on_event);
    event_subscribe(EVENT_GOAL, on_event);
}

s32 score_points(void) {
    return points;
}

void score_draw(void) {
    font_draw_number(points, SCREEN_WIDTH - font_width("000000"), 2, 7);
}
