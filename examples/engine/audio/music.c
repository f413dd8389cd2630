/* Tunes as texts: a letter is a half tone from 'a', a blank a rest. */
#include "audio/audio.h"

static const signed char wave[] = {0, 49, 90, 117, 127, 117, 90, 49, 0, -49, -90, -117, -127};
static struct sound tone = {wave, COUNT(wave), 4096};
static const char *next;
static int voice = -1;

void music_play(const char *tune) {
    music_stop();
    next = tune;
}

void music_tick(void) {
    if (!next || !*next)
        return;
    mixer_stop(voice);
    voice = -1;
    if (*next >= 'a' && *next < 'a' + COUNT(note_steps)) {
        tone.step = note_steps[*next - 'a'];
        voice = mixer_play(&tone, 100);
    }
    next++;
}

void music_stop(void) {
    mixer_stop(voice);
    voice = -1;
    next = NOTHING;
}
