// The matcher's settings and functions on texts.
#include "base/options.h"
#include "mem/galloc.h"
#include "range/range.h"
#include "wild/wildstate.h"

#include <cstring>
#include <string_view>

int32_t WILDcharstar = '*';
int32_t WILDcharquestion = '?';
int32_t WILDcharnumber = '#';
int32_t WILDcharleftbracket = '[';
int32_t WILDcharrightbracket = ']';
int32_t WILDtoupper = 0;
int32_t current_unmatched = 0;

bool compressWildCard(char *destination, const char *pattern) {
    int length = 0;
    for (const char *p = pattern; *p != 0; ++p) {
        const bool inRun = p > pattern && p[-1] == *p && (isstarchar(*p) || isnumberchar(*p));
        if (inRun)
            continue;
        if (length == WILDTEXTLIMIT) {
            destination[0] = 0;
            return false;
        }
        destination[length++] = *p;
    }
    destination[length] = 0;
    return true;
}

int charsequal(char patternChar, char stringChar, int caseSensitive) {
    if (patternChar == stringChar || (patternChar == '/' && stringChar == '\\'))
        return 1;
    return caseSensitive == 0 && lowerchar(patternChar) == lowerchar(stringChar) ? 1 : 0;
}

namespace {

bool equalwithoutcase(const char *a, const char *b, size_t length) {
    size_t i = 0;
    while (i < length && lowerchar(a[i]) == lowerchar(b[i]))
        ++i;
    return i == length;
}

} // namespace

const char *findliteral(const char *string, size_t stringLength, const char *literal,
                        size_t literalLength, bool caseSensitive) {
    if (caseSensitive) {
        const size_t found =
            std::string_view(string, stringLength).find(std::string_view(literal, literalLength));
        return found != std::string_view::npos ? string + found : nullptr;
    }
    for (size_t i = 0; i + literalLength <= stringLength; ++i)
        if (equalwithoutcase(string + i, literal, literalLength))
            return string + i;
    return nullptr;
}

const char *caseStrStr(const char *text, const char *needle, int caseSensitive) {
    if (caseSensitive != 0)
        return strstr(text, needle);
    const size_t textLength = strnlen(text, BRAXFIELDSIZE);
    const size_t needleLength = strnlen(needle, BRAXFIELDSIZE);
    if (textLength == BRAXFIELDSIZE || needleLength == BRAXFIELDSIZE)
        return nullptr;
    return findliteral(text, textLength, needle, needleLength, false);
}

bool isdigits(const char *text, size_t length) {
    size_t i = 0;
    while (i < length && isdigitchar(text[i]))
        ++i;
    return i == length && length > 0;
}

int isNumeric(const char *text) {
    return isdigits(text, strlen(text)) ? 1 : 0;
}

int32_t decimalvalue(const char *text, size_t length) {
    int64_t value = 0;
    for (size_t i = 0; i < length && value <= INT32_MAX; ++i)
        value = value * 10 + (text[i] - '0');
    return toint32(value);
}

namespace {

// Returns the position after the bracket that ends the group at p, or null without one.
const char *skipgroup(const char *p, const char *end) {
    do
        ++p;
    while (p != end && *p != 0 && !isleftbracket(*p) && !isrightbracket(*p));
    return p != end && *p != 0 ? p + 1 : nullptr;
}

// Copies the contents of the group at *position and moves after it. Returns false without a
// closed group.
bool takegroup(const char **position, char *contents) {
    const char *start = *position + 1;
    const char *end = isleftbracket(**position) ? skipgroup(*position, nullptr) : nullptr;
    if (end == nullptr || !isrightbracket(end[-1]))
        return false;
    *position = end;
    return copytext(contents, start, static_cast<size_t>(end - 1 - start), WILDTEXTSIZE);
}

} // namespace

const char *skipindex(const char *position, const char *end) {
    const char *p = position;
    for (int groups = 0; groups < 2 && p != nullptr && p != end && isleftbracket(*p); ++groups)
        p = skipgroup(p, end);
    return p;
}

const char *getIndex(char *index, const char *destination) {
    const char *end = skipindex(destination, nullptr);
    index[0] = 0;
    if (end == nullptr)
        return destination + strlen(destination);
    return copytext(index, destination, static_cast<size_t>(end - destination), WILDTEXTSIZE)
               ? end
               : nullptr;
}

int isValidIndex(const char *index, char *number, char *range) {
    number[0] = 0;
    range[0] = 0;
    if (*index == 0)
        return 1;
    if (!takegroup(&index, number) || (number[0] != 0 && isNumeric(number) == 0))
        return 0;
    if (*index == 0)
        return 1;
    return takegroup(&index, range) && *index == 0 && RANGE_check(range, 0, WILDLASTPOSITION) != 0
               ? 1
               : 0;
}

void wild_itoa(int32_t value, char *buffer, int32_t radix) {
    if (radix < 2 || radix > 36)
        return;
    uint32_t rest = static_cast<uint32_t>(value);
    if (value < 0) {
        *buffer++ = '-';
        rest = 0 - rest;
    }
    char digits[32];
    int count = 0;
    do {
        const char digit = static_cast<char>(rest % static_cast<uint32_t>(radix));
        digits[count++] = static_cast<char>(digit + (digit < 10 ? '0' : 'a' - 10));
        rest /= static_cast<uint32_t>(radix);
    } while (rest != 0);
    while (count > 0)
        *buffer++ = digits[--count];
    *buffer = 0;
}

char **reallocateBuffer(char **list, const char *text, int32_t count) {
    char *copy = galloctext(text);
    char **larger = copy != nullptr ? gallocarray<char *>(count) : nullptr;
    if (larger == nullptr) {
        grelease(copy);
        return nullptr;
    }
    for (int32_t i = 0; i < count - 1; ++i)
        larger[i] = list[i];
    larger[count - 1] = copy;
    grelease(list);
    return larger;
}

void freeBuffer(char **list, int32_t count) {
    for (int32_t i = 0; list != nullptr && i < count; ++i)
        gfree(list[i]);
    grelease(list);
}
