/* Fixed-point arithmetic; the division is done by hand, 64-bit helpers are not at hand. */
#include "math/fixmath.h"

fixed fixed_multiply(fixed a, fixed b) {
    return (fixed)(((long long)a * b) >> 16);
}

fixed fixed_divide(fixed a, fixed b) {
    u32 rest = a < 0 ? 0u - (u32)a : (u32)a;
    u32 by = b < 0 ? 0u - (u32)b : (u32)b;
    u32 result;
    int bit;
    if (by == 0)
        return (a < 0) ? -0x7fffffff : 0x7fffffff;
    result = rest / by;
    rest %= by;
    for (bit = 0; bit < 16; bit++) {
        u32 carry = rest >> 31;
        rest <<= 1;
        result <<= 1;
        if (carry || rest >= by) {
            rest -= by;
            result |= 1;
        }
    }
    return (a < 0) != (b < 0) ? (fixed)(0u - result) : (fixed)result;
}

fixed fixed_root(fixed value) {
    u32 rest = value > 0 ? (u32)value : 0;
    u32 root = 0;
    u32 bit = 1u << 30;
    for (; bit > 0; bit >>= 2) {
        if (rest >= root + bit) {
            rest -= root + bit;
            root = (root >> 1) + bit;
        } else {
            root >>= 1;
        }
    }
    return (fixed)(root << 8);
}

fixed fixed_clamp(fixed value, fixed least, fixed most) {
    return value < least ? least : value > most ? most : value;
}
