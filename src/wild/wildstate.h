// What the matching half hands to the building half of one string match. Private to wild/.
#pragma once

#include "base/text.h"
#include "wild/wild.h"

#include <cstddef>
#include <cstdint>

// The longest literal, capture and index.
constexpr int WILDTEXTLIMIT = WILDTEXTSIZE - 1;

// Upper bound of the positions that a destination range may name.
constexpr int32_t WILDLASTPOSITION = 32768;

// A captured part of the string.
struct CAPTURE {
    int32_t start;
    int32_t length;
};

// A pattern has no more wildcards than characters, so the lists never grow.
struct CAPTURES {
    int32_t count;
    CAPTURE items[WILDTEXTLIMIT];
};

// Large, and therefore never cleared as a whole: a match that fails early pays only for what
// it used.
struct WILDMATCH {
    const char *string;
    const char *position; // in the string
    bool caseSensitive;
    char pattern[WILDTEXTSIZE]; // collapsed
    CAPTURES stars;
    CAPTURES questions;
    CAPTURES numbers;
};

inline bool isstarchar(char c) {
    return c != 0 && charvalue(c) == WILDcharstar;
}

inline bool isquestionchar(char c) {
    return c != 0 && charvalue(c) == WILDcharquestion;
}

inline bool isnumberchar(char c) {
    return c != 0 && charvalue(c) == WILDcharnumber;
}

inline bool iswildchar(char c) {
    return isstarchar(c) || isquestionchar(c) || isnumberchar(c);
}

inline bool isleftbracket(char c) {
    return c != 0 && charvalue(c) == WILDcharleftbracket;
}

inline bool isrightbracket(char c) {
    return c != 0 && charvalue(c) == WILDcharrightbracket;
}

// Length of the literal run at the position.
inline size_t literallength(const char *text) {
    size_t length = 0;
    while (text[length] != 0 && !iswildchar(text[length]))
        ++length;
    return length;
}

// The text's position in a piece of string, given by lengths; null when it is not there.
const char *findliteral(const char *string, size_t stringLength, const char *literal,
                        size_t literalLength, bool caseSensitive);

bool isdigits(const char *text, size_t length);

// The end of the bracketed groups at the position, at most two; the position itself when
// there are none, null when one is not closed before `end` (null: the end of the text).
const char *skipindex(const char *position, const char *end);

// A decimal text's value; saturates.
int32_t decimalvalue(const char *text, size_t length);

// What the building half made of a match.
constexpr int WILDBUILT = 1;
constexpr int WILDBADINDEX = 0; // the output ends at an invalid index
constexpr int WILDFAILED = -1;  // out of memory, or the output passes the limit

// Writes the output of a successful match, at most `limit` characters, and ends it.
int buildoutput(WILDMATCH *match, char *output, const char *destination, bool caseCarrying,
                int64_t limit);

// matchstring with an output of at most `limit` characters; a longer one fails the match.
int matchlimited(char *output, const char *string, const char *pattern, const char *destination,
                 int *length, int caseSensitive, int caseCarrying, int64_t limit);
