// The range iterator: steps through the floating-point values that a range text names.
//
//     RANGER *r = RANGER_open(evaluator, "0..1+=0.25,10..0-=2,x*2", 0, 100);
//     for (double value; RANGER_next(r, &value) != 0;) ...
//     RANGER_close(r);
//
// A text is elements separated by ','; an element is [first][..[last]][+=step], or -=step,
// of which at least one part must be there. It has the values from its first up or down to
// and including its last in steps of 1 or of the step, whatever sign that has; without "..",
// and with no step either, the first value alone. A missing end is the default, or where
// steps from the other end come nearest to it. An empty element has no value: RANGER_next returns
// 0 there once.
//
// The parts are expressions (see expr/expr.h) when there is an evaluator, else numbers.
// Brackets and quotes protect the characters that separate them.
#pragma once

#include "expr/expr.h"

#include <cstdint>

struct RANGER {
    double current;    // the value handed out last
    double step;       // of the current element, negative when it runs downward
    double low;        // the current element's smaller end
    double high;       // its larger end
    double defaultMin; // ends of elements that give none
    double defaultMax;
    int64_t remaining;  // values of the current element still to come
    EXPR *evaluator;    // may be null
    const char *cursor; // start of the next element
    const char *text;
    uint8_t failed; // an element was malformed or could not be evaluated, or a step was 0
    double start;   // private: the current element's first value
    double steps;   // private: made from there
};

// A new iterator in front of the first value; null when memory runs out. The text and the
// evaluator, which may be null, stay the caller's and must outlive it.
RANGER *RANGER_open(EXPR *evaluator, const char *text, double defaultMin, double defaultMax);

// Stores the next value and returns 1. Returns 0 from the first element on that fails, and at
// the end of the text, with a value one step further each time.
int RANGER_next(RANGER *ranger, double *value);

// The smallest and largest ends and the number of values of the whole text, wherever the
// iterator is; it stays there. Any output may be null. Returns 1, or 0 when an element fails,
// with the outputs telling of those before it.
int RANGER_info(const RANGER *ranger, double *minimum, double *maximum, int64_t *count);

// The value of the whole text closest to `value`: mode 0 nearest, 1 at or below, else at or
// above. Of two as near, the one further on in its element, the larger one of two elements,
// or the later element counts. 0 when there is none nearer than 999,999,999,999,999. The
// ends of an element count as values even when no step reaches its last. The iterator stays
// where it is, but for `failed`, which tells whether an element failed.
double RANGER_closest(RANGER *ranger, double value, int mode);

// Releases the iterator; null is ignored.
void RANGER_close(RANGER *ranger);

// Reads the element at the cursor, sets the iterator to its start, and moves the cursor after it.
// Returns 1, or 0 at the end of the text, for an empty element, and when the iterator has failed.
int RANGER_getrangelet(RANGER *ranger);

// Reads the field at the cursor, up to ',', "..", "+=", "-=" or the end. Returns 1, or 0
// when it is empty, with the value 0.
int RANGER_getfield(RANGER *ranger, double *value);
