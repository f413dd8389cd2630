/* Numbers with 16 bits behind the point, and what geometry needs of them. */
#ifndef ENGINE_FIXMATH_H
#define ENGINE_FIXMATH_H

#include "core/core.h"

typedef s32 fixed;
#define ONE 65536
#define FIXED(whole) ((fixed)((whole)*ONE))
#define WHOLE(value) ((int)((value) / ONE))

struct vector {
    fixed x, y, z;
};
struct matrix {
    fixed cell[3][4];
};

/* fixed.c */
fixed fixed_multiply(fixed a, fixed b);
fixed fixed_divide(fixed a, fixed b);
fixed fixed_root(fixed value);
fixed fixed_clamp(fixed value, fixed least, fixed most);

/* trig.c, sinetable.c: a full turn is 256. */
extern const u16 sine_quarter[65];
fixed trig_sine(int angle);
fixed trig_cosine(int angle);
int trig_angle(fixed x, fixed y);

/* vector.c */
struct vector vector_add(struct vector a, struct vector b);
struct vector vector_subtract(struct vector a, struct vector b);
struct vector vector_scale(struct vector a, fixed by);
fixed vector_dot(struct vector a, struct vector b);
fixed vector_length(struct vector a);
struct vector vector_normal(struct vector a);

/* matrix.c */
void matrix_identity(struct matrix *matrix);
void matrix_turn(struct matrix *matrix, int angle);
void matrix_multiply(struct matrix *to, const struct matrix *a, const struct matrix *b);
struct vector matrix_apply(const struct matrix *matrix, struct vector point);

#endif
