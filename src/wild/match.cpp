// The matching half: one pass over the string that notes what each wildcard captured.
//
// A step that fails still compares the literal run behind its wildcard before the match ends:
// the length that is then reported counts those characters, and callers see it.
#include "base/options.h"
#include "wild/wildstate.h"

#include <cstring>

namespace {

// Adds the next `length` characters to a list and moves behind them; false, without a move,
// when they pass the limit.
bool capture(WILDMATCH *match, CAPTURES *list, size_t length) {
    if (length > WILDTEXTLIMIT)
        return false;
    const auto start = static_cast<int32_t>(match->position - match->string);
    list->items[list->count++] = {start, static_cast<int32_t>(length)};
    match->position += length;
    return true;
}

// Characters that are left, counted no further than a capture of the limit and `more` need.
size_t remaining(const WILDMATCH *match, size_t more) {
    return strnlen(match->position, WILDTEXTLIMIT + 1 + more);
}

// Length of the text in front of the literal's first occurrence at least `skipped` characters
// on, less those; above the limit when there is none within reach.
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

size_t digitlength(const char *text) {
    size_t length = 0;
    while (isdigitchar(text[length]))
        ++length;
    return length;
}

bool matchquestion(WILDMATCH *match) {
    return *match->position != 0 && capture(match, &match->questions, 1);
}

bool matchstar(WILDMATCH *match, const char *behind) {
    if (isnumberchar(*behind))
        return capture(match, &match->stars, strcspn(match->position, "0123456789"));
    size_t questions = 0;
    while (isquestionchar(behind[questions]))
        ++questions;
    const char *literal = behind + questions;
    const size_t literalLength = literallength(literal);
    if (literalLength != 0)
        return capture(match, &match->stars,
                       lengthbefore(match, questions, literal, literalLength));
    const size_t left = remaining(match, questions);
    return left >= questions && capture(match, &match->stars, left - questions);
}

// Here the position moves behind a text that turns out not to be a number, too.
bool matchnumber(WILDMATCH *match, const char *behind) {
    const char *start = match->position;
    const size_t literalLength = literallength(behind);
    size_t length = 0;
    if (literalLength != 0)
        length = lengthbefore(match, 0, behind, literalLength);
    else
        length = *behind != 0 ? digitlength(start) : remaining(match, 0);
    return capture(match, &match->numbers, length) && isdigits(start, length);
}

// The literal run at *pattern, which moves to its end; false at the first mismatch, where the
// string's position then stays.
bool matchliteral(WILDMATCH *match, const char **pattern) {
    for (; **pattern != 0 && !iswildchar(**pattern); ++*pattern, ++match->position)
        if (*match->position == 0 ||
            charsequal(**pattern, *match->position, match->caseSensitive) == 0)
            return false;
    return true;
}

// One wildcard and the literal run behind it.
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
    match.stars.count = 0;
    match.questions.count = 0;
    match.numbers.count = 0;
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
