// One string match, passed from match.cpp to build.cpp. Private to wild/.
#pragma once

#include "base/text.h"
#include "wild/wild.h"

#include <cstddef>
#include <cstdint>

// The longest literal, capture and index.
constexpr int WILDTEXTLIMIT = WILDTEXTSIZE - 1;

// Upper bound of the positions in a destination range.
constexpr int32_t WILDLASTPOSITION = 32768;

// A captured part of the string.
struct CAPTURE {
    int32_t start;
    int32_t length;
};

struct CAPTURES {
    int32_t count;
    CAPTURE *items;
};

// Not cleared: it is large, and many matches fail early.
struct WILDMATCH {
    const char *string;
    const char *position; // in the string
    bool caseSensitive;
    char pattern[WILDTEXTSIZE]; // collapsed
    CAPTURES stars;
    CAPTURES questions;
    CAPTURES numbers;
    CAPTURE items[3][WILDTEXTLIMIT]; // a row for each list, enough for any pattern
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

// Returns the number of digits at the position.
inline size_t digitlength(const char *text) {
    size_t length = 0;
    while (isdigitchar(text[length]))
        ++length;
    return length;
}

// Returns the length of the literal at the position.
inline size_t literallength(const char *text) {
    size_t length = 0;
    while (text[length] != 0 && !iswildchar(text[length]))
        ++length;
    return length;
}

// Returns the first occurrence of the literal in the string, or null.
const char *findliteral(const char *string, size_t stringLength, const char *literal,
                        size_t literalLength, bool caseSensitive);

bool isdigits(const char *text, size_t length);

// Returns the end of the bracketed groups at the position, at most two, or the position itself
// without any. Returns null when one is not closed before `end` or the terminator.
const char *skipindex(const char *position, const char *end);

// Returns the value of `length` decimal digits; saturates.
int32_t decimalvalue(const char *text, size_t length);

// Results of buildoutput.
constexpr int WILDBUILT = 1;
constexpr int WILDBADINDEX = 0; // the output ends at an invalid index
constexpr int WILDFAILED = -1;  // out of memory, or the output passes the limit

// Writes the output of a successful match, at most `limit` characters, and terminates it.
int buildoutput(WILDMATCH *match, char *output, const char *destination, bool caseCarrying,
                int64_t limit);

// Works like matchstring, but fails when the output passes `limit` characters.
int matchlimited(char *output, const char *string, const char *pattern, const char *destination,
                 int *length, int caseSensitive, int caseCarrying, int64_t limit);
