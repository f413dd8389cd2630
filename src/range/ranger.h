// The range iterator: steps through the floating-point values of a range text.
//
//     RANGER *r = RANGER_open(evaluator, "0..1+=0.25,10..0-=2,x*2", 0, 100);
//     for (double value; RANGER_next(r, &value) != 0;) ...
//     RANGER_close(r);
//
// A text is elements separated by ','. An element is [first][..[last]][+=step], or -=step,
// with at least one part. Its values go from the first, up or down, to the last included. The
// step is 1 unless given; its sign is ignored. Without ".." and step the first value is the
// only one. A missing end is the default, moved inward to whole steps from the other end.
// At an empty element RANGER_next returns 0 once.
//
// The parts are expressions (see expr/expr.h) when there is an evaluator, else numbers.
// Brackets and quotes protect the characters that separate them.
#pragma once

#include "expr/expr.h"

#include <cstdint>

struct RANGER {
    double current;    // the last value returned
    double step;       // of the current element, negative when it goes down
    double low;        // the current element's smaller end
    double high;       // its larger end
    double defaultMin; // missing ends of elements
    double defaultMax;
    int64_t remaining;  // values left in the current element
    EXPR *evaluator;    // may be null
    const char *cursor; // start of the next element
    const char *text;
    uint8_t failed; // 1 after a malformed element, a failed expression or step 0
    double start;   // private: the current element's first value
    double steps;   // private: number of steps from there
};

// Returns a new iterator before the first value, or null when memory runs out. The caller
// owns the text and the evaluator, which may be null; both must outlive the iterator.
RANGER *RANGER_open(EXPR *evaluator, const char *text, double defaultMin, double defaultMax);

// Stores the next value and returns 1. Returns 0 at the end of the text and from the first
// failing element on; the value is then one step further each time.
int RANGER_next(RANGER *ranger, double *value);

// Stores the smallest and largest ends and the number of values of the whole text. Any output
// may be null. The iterator does not move. Returns 1, or 0 when an element fails; the outputs
// then describe the elements before it.
int RANGER_info(const RANGER *ranger, double *minimum, double *maximum, int64_t *count);

// Returns the value of the whole text closest to `value`: mode 0 the nearest, 1 at or below,
// else at or above. Of two values as near, it takes the later one within an element, else the
// larger one, else that of the later element. Both ends of an element count as values. Returns 0
// when no value is nearer than 999,999,999,999,999. Sets `failed` when an element fails, else
// clears it; the iterator does not move.
double RANGER_closest(RANGER *ranger, double value, int mode);

// Frees the iterator. Null is allowed.
void RANGER_close(RANGER *ranger);

// Reads the element at the cursor, moves the cursor after it and the iterator to its start.
// Returns 1, or 0 at the end of the text, for an empty element, and after a failure.
int RANGER_getrangelet(RANGER *ranger);

// Reads the field at the cursor up to ',', "..", "+=", "-=" or the end. Returns 1, or 0 with
// value 0 when it is empty.
int RANGER_getfield(RANGER *ranger, double *value);
