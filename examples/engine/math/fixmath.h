/* Numbers with 16 bits after the point, and angles. */
#ifndef ENGINE_FIXMATH_H
#define ENGINE_FIXMATH_H

#include "core/core.h"

typedef s32 fixed;
#define ONE 65536
#define FIXED(whole) ((fixed)((whole)*ONE))

/* fixed.c */
fixed fixed_multiply(fixed a, fixed b);
fixed fixed_distance(fixed a, fixed b);
fixed fixed_clamp(fixed value, fixed least, fixed most);

/* trig.c, sinetable.c: a full turn is 256. */
extern const u16 sine_quarter[65];
fixed trig_sine(int angle);
fixed trig_cosine(int angle);
int trig_angle(fixed x, fixed y);

#endif
