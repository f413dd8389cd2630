// The twelve functions for users, split paths, and the output's size.
#include "wild/wild.h"

#include "range/range.h"
#include "wild/wildstate.h"

#include <cstring>

WILDMATCHFUN pathmatchfun = WILD_matchpath;
WILDMATCHFUN stringmatchfun = WILD_match;

namespace {

// Returns the part after the last '/' or '\'. Without one, or with only one at the start,
// returns the whole text.
const char *namepart(const char *text) {
    const char *name = text;
    for (const char *p = text; *p != 0; ++p)
        if (isslash(*p))
            name = p + 1;
    return name == text + 1 ? text : name;
}

// A copy of a text's directory part, and its name part.
struct PATHPARTS {
    char directory[WILDTEXTSIZE];
    const char *name;
};

// Returns false when a part is too long.
bool splitpath(PATHPARTS *parts, const char *text) {
    parts->name = namepart(text);
    return copytext(parts->directory, text, static_cast<size_t>(parts->name - text),
                    WILDTEXTSIZE) &&
           strnlen(parts->name, WILDTEXTSIZE) < WILDTEXTSIZE;
}

int matchparts(char *output, const PATHPARTS *string, const PATHPARTS *pattern,
               const PATHPARTS *destination, int *length, int caseSensitive, int caseCarrying) {
    if (matchlimited(output, string->directory, pattern->directory, destination->directory, nullptr,
                     caseSensitive, caseCarrying, WILDTEXTLIMIT) == 0)
        return 0;
    return matchlimited(output + strlen(output), string->name, pattern->name, destination->name,
                        length, caseSensitive, caseCarrying, WILDTEXTLIMIT);
}

} // namespace

int matchpath(char *output, const char *string, const char *pattern, const char *destination,
              int *length, int caseSensitive, int caseCarrying) {
    output[0] = 0;
    if (namepart(pattern) == pattern)
        return matchstring(output, string, pattern, destination, length, caseSensitive,
                           caseCarrying);
    PATHPARTS strings; // too large to clear
    PATHPARTS patterns;
    PATHPARTS destinations;
    const bool fits = splitpath(&strings, string) && splitpath(&patterns, pattern) &&
                      splitpath(&destinations, destination);
    if (fits && matchparts(output, &strings, &patterns, &destinations, length, caseSensitive,
                           caseCarrying) != 0)
        return 1;
    output[0] = 0;
    return 0;
}

namespace {

// Returns the greatest number of characters for the wildcard at *position. Moves after it and
// its index.
int64_t insertionsize(const char **position, const char *end, int64_t longestCapture) {
    const char *p = *position;
    const char wildcard = *p++;
    const bool isNumber = !isstarchar(wildcard) && !isquestionchar(wildcard);
    int64_t width = 1;
    for (; isNumber && p != end && isnumberchar(*p); ++p)
        ++width;
    const char *index = p;
    p = skipindex(index, end);
    *position = p != nullptr ? p : end;
    if (isstarchar(wildcard))
        return longestCapture;
    if (isNumber)
        return width + (longestCapture > 11 ? longestCapture : 11);
    char text[WILDTEXTSIZE];
    char number[WILDTEXTSIZE];
    char range[WILDTEXTSIZE];
    if (p == nullptr || !copytext(text, index, static_cast<size_t>(p - index), sizeof text) ||
        isValidIndex(text, number, range) == 0 || range[0] == 0)
        return 1;
    const int32_t column = RANGE_min(range, 0);
    return column > 1 ? column : 1;
}

int64_t sizefor(const char *destination, const char *end, int64_t longestCapture) {
    int64_t room = 0;
    while (destination != end) {
        if (iswildchar(*destination)) {
            room += insertionsize(&destination, end, longestCapture);
        } else {
            ++room;
            ++destination;
        }
    }
    return room;
}

} // namespace

int64_t WILD_outputsize(const char *string, const char *destination) {
    const auto longestCapture = static_cast<int64_t>(strnlen(string, WILDTEXTLIMIT));
    const char *end = destination + strlen(destination);
    const char *name = namepart(destination);
    const int64_t whole = sizefor(destination, end, longestCapture);
    // A separator inside an index splits the path there.
    const int64_t parts =
        sizefor(destination, name, longestCapture) + sizefor(name, end, longestCapture);
    return (parts > whole ? parts : whole) + 1;
}

int WILD_match(char *output, const char *string, const char *pattern, const char *destination) {
    return matchstring(output, string, pattern, destination, nullptr, 1, 0);
}

int WILD_imatch(char *output, const char *string, const char *pattern, const char *destination) {
    return matchstring(output, string, pattern, destination, nullptr, 0, 0);
}

int WILD_icmatch(char *output, const char *string, const char *pattern, const char *destination) {
    return matchstring(output, string, pattern, destination, nullptr, 0, 1);
}

int WILD_matchpath(char *output, const char *string, const char *pattern, const char *destination) {
    return matchpath(output, string, pattern, destination, nullptr, 1, 0);
}

int WILD_imatchpath(char *output, const char *string, const char *pattern,
                    const char *destination) {
    return matchpath(output, string, pattern, destination, nullptr, 0, 0);
}

int WILD_icmatchpath(char *output, const char *string, const char *pattern,
                     const char *destination) {
    return matchpath(output, string, pattern, destination, nullptr, 0, 1);
}

int WILD_nmatch(char *output, const char *string, const char *pattern, const char *destination,
                int *length) {
    return matchstring(output, string, pattern, destination, length, 1, 0);
}

int WILD_nimatch(char *output, const char *string, const char *pattern, const char *destination,
                 int *length) {
    return matchstring(output, string, pattern, destination, length, 0, 0);
}

int WILD_nicmatch(char *output, const char *string, const char *pattern, const char *destination,
                  int *length) {
    return matchstring(output, string, pattern, destination, length, 0, 1);
}

int WILD_nmatchpath(char *output, const char *string, const char *pattern, const char *destination,
                    int *length) {
    return matchpath(output, string, pattern, destination, length, 1, 0);
}

int WILD_nimatchpath(char *output, const char *string, const char *pattern, const char *destination,
                     int *length) {
    return matchpath(output, string, pattern, destination, length, 0, 0);
}

int WILD_nicmatchpath(char *output, const char *string, const char *pattern,
                      const char *destination, int *length) {
    return matchpath(output, string, pattern, destination, length, 0, 1);
}
