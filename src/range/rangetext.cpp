// Comparing a text with a bound that may hold wildcards.
//
// By its definition a '*' tries every suffix of the text against the rest of the bound: zero
// when one of them gives zero, otherwise the result for the whole text. Literally done, that
// takes exponential time. Every other character of the bound takes exactly one of the text,
// so the result for a suffix depends only on where it meets the next '*'; one row with the
// results of all suffixes, worked out from the last '*' to the first, gives the same answer
// in the product of both lengths.
#include "range/range.h"

#include "base/text.h"
#include "mem/galloc.h"

#include <cstring>

namespace {

// A text whose last digits, from `digits` on, are its numeric tail.
struct TAIL {
    const char *text;
    const char *end;
    const char *digits;
};

TAIL tailof(const char *text) {
    const char *end = text + strlen(text);
    const char *digits = end;
    while (digits > text && isdigitchar(digits[-1]))
        --digits;
    return {text, end, digits};
}

// What rangeisnumeric says of the rest of the text from `p` on.
bool isnumericrest(const TAIL *tail, const char *p) {
    return (*p == '-' ? p + 1 : p) >= tail->digits && (*p == '-' ? p + 1 : p) < tail->end;
}

int32_t numericdifference(const char *a, const char *b) {
    return toint32(static_cast<int64_t>(rangenumber(a)) - rangenumber(b));
}

// Two positions that are compared.
struct PAIR {
    const char *a;  // in the text
    const char *b;  // in the bound
    bool sameValue; // both rests are numbers and known to be equal
};

// One character of the bound, not a '*', against one of the text. Zero: they agree, and both
// go on unless they ended.
int32_t comparechar(const TAIL *text, const TAIL *bound, PAIR *pair) {
    const char a = *pair->a;
    const char b = *pair->b;
    if (b == '?')
        return a != 0 ? 0 : -63;
    if (b == '#')
        return isdigitchar(a) ? 0 : charvalue(a) - '0';
    const bool numeric = isnumericrest(bound, pair->b) && isnumericrest(text, pair->a);
    if (numeric && !pair->sameValue) {
        const int32_t difference = numericdifference(pair->a, pair->b);
        if (difference != 0)
            return difference;
    }
    // Without this, long runs of zeros would be read again at each of them.
    pair->sameValue = numeric && a == '0' && b == '0';
    return charvalue(lowerchar(a)) - charvalue(lowerchar(b));
}

// Compares up to the bound's end or its next '*'. There the pair stops, and the comparison is
// not decided; otherwise its b becomes null and the result is final.
int32_t comparesegment(const TAIL *text, const TAIL *bound, PAIR *pair) {
    for (; *pair->b != '*'; ++pair->a, ++pair->b) {
        const int32_t result = comparechar(text, bound, pair);
        if (result != 0 || *pair->b == 0) {
            pair->b = nullptr;
            return result;
        }
    }
    return 0;
}

// Turns the results of all suffixes behind a '*' into those at it: zero where a shorter
// suffix gives zero.
void spreadzeros(int32_t *row, int64_t length) {
    bool zero = false;
    for (int64_t i = length; i >= 0; --i) {
        zero = zero || row[i] == 0;
        if (zero)
            row[i] = 0;
    }
}

// Fills row[i] with the result for the suffix at i against the bound from its first '*' on,
// given by `first`.
void comparestars(const TAIL *text, const TAIL *bound, const char *first, int32_t *row) {
    const int64_t length = text->end - text->text;
    const char *star = bound->end;
    while (star > first) {
        do
            --star;
        while (*star != '*');
        if (star[1] == '*')
            continue; // a run of them counts as one
        for (int64_t i = 0; i <= length; ++i) {
            PAIR pair = {text->text + i, star + 1, false};
            const int32_t result = comparesegment(text, bound, &pair);
            row[i] = pair.b == nullptr ? result : row[pair.a - text->text];
        }
        spreadzeros(row, length);
    }
}

} // namespace

int32_t wildstrcmp(const char *text, const char *bound) {
    const TAIL textTail = tailof(text);
    const TAIL boundTail = tailof(bound);
    PAIR pair = {text, bound, false};
    const int32_t result = comparesegment(&textTail, &boundTail, &pair);
    if (pair.b == nullptr)
        return result;
    int32_t small[2048];
    const int64_t places = textTail.end - text + 1;
    int32_t *row = places <= 2048 ? small : gallocarray<int32_t>(places);
    if (row == nullptr)
        return -1;
    memset(row, 0, static_cast<size_t>(places) * sizeof(int32_t));
    comparestars(&textTail, &boundTail, pair.b, row);
    const int32_t found = row[pair.a - text];
    if (row != small)
        gfree(row);
    return found;
}
