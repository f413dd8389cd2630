/* Noises that answer events. The beep is weak: a machine may have a better one. */
#include "audio/audio.h"

static const signed char click[] = {0, 90, -90, 60, -60, 30, -30, 0};
static struct sound sound = {click, COUNT(click), 4096};

WEAK void effects_beep(int pitch) {
    sound.step = (u32)(4096 + 256 * pitch);
    if (mixer_busy() < 6)
        mixer_play(&sound, 120);
}

static void on_event(enum event event, s32 value) {
    (void)value;
    effects_beep((int)event);
}

void effects_listen(void) {
    event_subscribe(EVENT_HIT, on_event);
    event_subscribe(EVENT_DEATH, on_event);
    event_subscribe(EVENT_GOAL, on_event);
}
