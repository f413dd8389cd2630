/* Turns and moves: three rows of a turn and a move. */
#include "math/fixmath.h"

void matrix_identity(struct matrix *matrix) {
    int i;
    memset(matrix, 0, sizeof *matrix);
    for (i = 0; i < 3; i++)
        matrix->cell[i][i] = ONE;
}

void matrix_turn(struct matrix *matrix, int angle) {
    matrix_identity(matrix);
    matrix->cell[0][0] = matrix->cell[2][2] = trig_cosine(angle);
    matrix->cell[0][2] = trig_sine(angle);
    matrix->cell[2][0] = -matrix->cell[0][2];
}

void matrix_multiply(struct matrix *to, const struct matrix *a, const struct matrix *b) {
    struct matrix result;
    int row, column, i;
    for (row = 0; row < 3; row++) {
        for (column = 0; column < 4; column++) {
            fixed sum = column == 3 ? a->cell[row][3] : 0;
            for (i = 0; i < 3; i++)
                sum += fixed_multiply(a->cell[row][i], b->cell[i][column]);
            result.cell[row][column] = sum;
        }
    }
    memcpy(to, &result, sizeof result);
}

static fixed apply_row(const fixed *row, struct vector point) {
    struct vector direction = {row[0], row[1], row[2]};
    return vector_dot(direction, point) + row[3];
}

struct vector matrix_apply(const struct matrix *matrix, struct vector point) {
    struct vector result = {
        apply_row(matrix->cell[0], point),
        apply_row(matrix->cell[1], point),
        apply_row(matrix->cell[2], point),
    };
    return result;
}
