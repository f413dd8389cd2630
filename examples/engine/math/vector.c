/* Points and directions in space. */
#include "math/fixmath.h"

struct vector vector_add(struct vector a, struct vector b) {
    a.x += b.x;
    a.y += b.y;
    a.z += b.z;
    return a;
}

struct vector vector_subtract(struct vector a, struct vector b) {
    a.x -= b.x;
    a.y -= b.y;
    a.z -= b.z;
    return a;
}

struct vector vector_scale(struct vector a, fixed by) {
    a.x = fixed_multiply(a.x, by);
    a.y = fixed_multiply(a.y, by);
    a.z = fixed_multiply(a.z, by);
    return a;
}

fixed vector_dot(struct vector a, struct vector b) {
    return fixed_multiply(a.x, b.x) + fixed_multiply(a.y, b.y) + fixed_multiply(a.z, b.z);
}

fixed vector_length(struct vector a) {
    return fixed_root(vector_dot(a, a));
}

struct vector vector_normal(struct vector a) {
    fixed length = vector_length(a);
    if (length > 0)
        a = vector_scale(a, fixed_divide(ONE, length));
    return a;
}
