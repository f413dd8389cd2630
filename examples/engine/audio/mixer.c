/* Adds the active voices. */
#include "audio/audio.h"

enum { VOICES = 8 };

static struct {
    const struct sound *sound;
    u32 at;
    int volume;
} voices[VOICES];

int mixer_play(const struct sound *sound, int volume) {
    int i;
    for (i = 0; i < VOICES; i++) {
        if (!voices[i].sound) {
            voices[i].sound = sound;
            voices[i].at = 0;
            voices[i].volume = volume * config_get("volume") / 100;
            return i;
        }
    }
    return -1;
}

void mixer_stop(int voice) {
    if (voice >= 0 && voice < VOICES)
        voices[voice].sound = NOTHING;
}

static int sample(int voice) {
    const struct sound *sound = voices[voice].sound;
    int position = (int)(voices[voice].at >> 12);
    if (position >= sound->length) {
        mixer_stop(voice);
        return 0;
    }
    voices[voice].at += sound->step;
    return sound->samples[position] * voices[voice].volume / 128;
}

void mixer_fill(signed char *to, int count) {
    memset(to, 0, (bytes)count);
    for (; count > 0; count--, to++) {
        int sum = 0;
        int i;
        for (i = 0; i < VOICES; i++)
            if (voices[i].sound)
                sum += sample(i);
        *to = (signed char)(sum < -128 ? -128 : sum > 127 ? 127 : sum);
    }
}
