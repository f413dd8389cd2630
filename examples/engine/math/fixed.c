/* Fixed-point arithmetic. */
#include "math/fixmath.h"

fixed fixed_multiply(fixed a, fixed b) {
    return (fixed)(((long long)a * b) >> 16);
}

fixed fixed_distance(fixed a, fixed b) {
    return a < b ? b - a : a - b;
}

fixed fixed_clamp(fixed value, fixed least, fixed most) {
    return value < least ? least : value > most ? most : value;
}
