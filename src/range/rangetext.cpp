// Compares a text with a bound that may have wildcards.
//
// A '*' compares every suffix of the text with the rest of the bound. The result is zero when
// one of them gives zero, else the result of the whole text. Recursion would take exponential
// time. Every other character of the bound takes exactly one of the text, so a suffix's
// result depends only on its position at the next '*'. One row holds the results of all
// suffixes, computed from the last '*' to the first, in the product of both lengths.
#include "range/range.h"

#include "base/text.h"
#include "mem/galloc.h"

#include <cstring>

namespace {

// A text with a numeric tail, perhaps empty, from `digits` on.
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

// Returns rangeisnumeric's result for the rest of the text from p on.
bool isnumericrest(const TAIL *tail, const char *p) {
    p += *p == '-' ? 1 : 0;
    return p >= tail->digits && p < tail->end;
}

int32_t numericdifference(const char *a, const char *b) {
    return toint32(static_cast<int64_t>(rangenumber(a)) - rangenumber(b));
}

// Two positions to compare.
struct PAIR {
    const char *a;  // in the text
    const char *b;  // in the bound
    bool sameValue; // both rests are known to be equal numbers
};

// Compares one character with one of the bound, but not '*'. Returns 0 when they match.
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
    // Saves reading the rest of a run of zeros again at each of them.
    pair->sameValue = numeric && a == '0' && b == '0';
    return charvalue(lowerchar(a)) - charvalue(lowerchar(b));
}

// Compares up to the bound's next '*' or its end. The pair stops at a '*'. Otherwise the
// result is final and the pair's b becomes null.
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

// Turns results after a '*' into results at it: zero where a shorter suffix gives zero.
void spreadzeros(int32_t *row, int64_t length) {
    bool zero = false;
    for (int64_t i = length; i >= 0; --i) {
        zero = zero || row[i] == 0;
        if (zero)
            row[i] = 0;
    }
}

// Sets row[i] to the result of the suffix at i and the bound from `first`, its first '*', on.
void comparestars(const TAIL *text, const TAIL *bound, const char *first, int32_t *row) {
    const int64_t length = text->end - text->text;
    const char *star = bound->end;
    while (star > first) {
        do
            --star;
        while (*star != '*');
        if (star[1] == '*')
            continue; // a run of stars is one
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
