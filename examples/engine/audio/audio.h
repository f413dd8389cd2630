/* Sound: eight voices, and a tune on one of them. */
#ifndef ENGINE_AUDIO_H
#define ENGINE_AUDIO_H

#include "core/core.h"

struct sound {
    const signed char *samples;
    int length;
    u32 step;
};

/* mixer.c */
int mixer_play(const struct sound *sound, int volume);
void mixer_stop(int voice);
void mixer_fill(signed char *to, int count);

/* notes.c */
extern const u16 note_steps[12];

/* music.c */
void music_play(const char *tune);
void music_tick(void);
PROTECTED void music_stop(void);

#endif
