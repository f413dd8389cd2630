/* Angles by table. A full turn is 256, so that a byte holds any angle. */
#include "math/fixmath.h"

fixed trig_sine(int angle) {
    int step = angle & 63;
    switch ((angle >> 6) & 3) {
    case 0:
        return sine_quarter[step];
    case 1:
        return sine_quarter[64 - step];
    case 2:
        return -(fixed)sine_quarter[step];
    default:
        return -(fixed)sine_quarter[64 - step];
    }
}

fixed trig_cosine(int angle) {
    return trig_sine(angle + 64);
}

/* Halves the turn eight times, once for each bit of the angle. */
int trig_angle(fixed x, fixed y) {
    int best = 0;
    int step;
    for (step = 128; step > 0; step >>= 1) {
        fixed here = fixed_multiply(x, trig_cosine(best)) + fixed_multiply(y, trig_sine(best));
        fixed there =
            fixed_multiply(x, trig_cosine(best + step)) + fixed_multiply(y, trig_sine(best + step));
        if (there > here)
            best += step;
    }
    return best & 255;
}
