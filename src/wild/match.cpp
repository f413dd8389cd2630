// Tests the string in one pass and records the captures.
//
// A failing wildcard still compares the literal after it: the length counts those characters.
#include "base/options.h"
#include "wild/wildstate.h"

#include <cstring>

namespace {

// Captures the next `length` characters and moves after them. Returns false, without a move,
// when they pass the limit.
bool capture(WILDMATCH *match, CAPTURES *list, size_t length) {
    if (length > WILDTEXTLIMIT)
        return false;
    const auto start = static_cast<int32_t>(match->position - match->string);
    list->items[list->count++] = {start, static_cast<int32_t>(length)};
    match->position += length;
    return true;
}

// Returns the number of characters left, at most WILDTEXTLIMIT + 1 + `more`.
size_t remaining(const WILDMATCH *match, size_t more) {
    return strnlen(match->position, WILDTEXTLIMIT + 1 + more);
}

// Returns the distance to the literal from `skipped` characters on, or a length above the
// limit when the literal is out of reach.
size_t lengthbefore(const WILDMATCH *match, size_t skipped, const char *literal,
                    size_t literalLength) {
    const size_t left = remaining(match, skipped + literalLength);
    if (left < skipped)
        return WILDTEXTLIMIT + 1;
    const char *from = match->position + skipped;
    const char *found =
        findliteral(from, left - skipped, literal, literalLength, match->caseSensitive);
    return found != nullptr ? static_cast<size_t>(found - from) : WILDTEXTLIMIT + 1;
}

bool matchquestion(WILDMATCH *match) {
    return *match->position != 0 && capture(match, &match->questions, 1);
}

bool matchstar(WILDMATCH *match, const char *after) {
    if (isnumberchar(*after))
        return capture(match, &match->stars, strcspn(match->position, "0123456789"));
    size_t questions = 0;
    while (isquestionchar(after[questions]))
        ++questions;
    const char *literal = after + questions;
    const size_t literalLength = literallength(literal);
    if (literalLength != 0)
        return capture(match, &match->stars,
                       lengthbefore(match, questions, literal, literalLength));
    const size_t left = remaining(match, questions);
    return left >= questions && capture(match, &match->stars, left - questions);
}

// Moves after the text even when it is not a number.
bool matchnumber(WILDMATCH *match, const char *after) {
    const char *start = match->position;
    const size_t literalLength = literallength(after);
    size_t length = 0;
    if (literalLength != 0)
        length = lengthbefore(match, 0, after, literalLength);
    else
        length = *after != 0 ? digitlength(start) : remaining(match, 0);
    return capture(match, &match->numbers, length) && isdigits(start, length);
}

// Matches the literal at *pattern and moves after it, or stops at the first mismatch and
// returns false.
bool matchliteral(WILDMATCH *match, const char **pattern) {
    for (; **pattern != 0 && !iswildchar(**pattern); ++*pattern, ++match->position)
        if (*match->position == 0 ||
            charsequal(**pattern, *match->position, match->caseSensitive) == 0)
            return false;
    return true;
}

// Matches one wildcard and the literal after it.
bool matchstep(WILDMATCH *match, const char **pattern) {
    const char wildcard = *(*pattern)++;
    bool matched = false;
    if (isstarchar(wildcard))
        matched = matchstar(match, *pattern);
    else if (isquestionchar(wildcard))
        matched = matchquestion(match);
    else
        matched = matchnumber(match, *pattern);
    return matchliteral(match, pattern) && matched;
}

bool fitscase(const WILDMATCH *match) {
    return match->caseSensitive || strnlen(match->string, BRAXFIELDSIZE) < BRAXFIELDSIZE;
}

int failed(char *output) {
    output[0] = 0;
    return 0;
}

} // namespace

int matchlimited(char *output, const char *string, const char *pattern, const char *destination,
                 int *length, int caseSensitive, int caseCarrying, int64_t limit) {
    WILDMATCH match;
    match.string = string;
    match.position = string;
    match.caseSensitive = caseSensitive != 0;
    match.stars = {0, match.items[0]};
    match.questions = {0, match.items[1]};
    match.numbers = {0, match.items[2]};
    bool matched = compressWildCard(match.pattern, pattern);
    const char *p = match.pattern;
    if (!matchliteral(&match, &p))
        return 0;
    matched = matched && fitscase(&match);
    while (matched && *p != 0)
        matched = matchstep(&match, &p);
    if (length != nullptr)
        *length = static_cast<int>(match.position - string);
    else if (*match.position != 0)
        matched = false;
    if (!matched)
        return failed(output);
    const int built = buildoutput(&match, output, destination, caseCarrying != 0, limit);
    return built == WILDFAILED ? failed(output) : built;
}

int matchstring(char *output, const char *string, const char *pattern, const char *destination,
                int *length, int caseSensitive, int caseCarrying) {
    return matchlimited(output, string, pattern, destination, length, caseSensitive, caseCarrying,
                        INT64_MAX);
}
