#include "range/range.h"

#include "base/text.h"

#include <cstring>
#include <utility>

int rangeisnumeric(const char *text) {
    if (*text == '-')
        ++text;
    if (*text == 0)
        return 0;
    while (isdigitchar(*text))
        ++text;
    return *text == 0 ? 1 : 0;
}

int32_t rangenumber(const char *text) {
    const bool negative = *text == '-';
    if (negative)
        ++text;
    int64_t value = 0;
    for (; isdigitchar(*text) && value <= INT32_MAX; ++text)
        value = value * 10 + (*text - '0');
    return toint32(negative ? -value : value);
}

const char *rangefinddots(const char *element) {
    return strstr(element, "..");
}

const char *rangefindplusequal(const char *element) {
    return strstr(element, "+=");
}

namespace {

// Copies the text up to `end`, or to its terminator when `end` is null.
bool cutpart(char *part, const char *text, const char *end) {
    const size_t length = end != nullptr ? static_cast<size_t>(end - text) : strlen(text);
    const bool fits = length < RANGEPARTSIZE;
    if (fits)
        memcpy(part, text, length);
    part[fits ? length : 0] = 0;
    return fits;
}

} // namespace

bool rangeminstr(char *minimum, const char *element) {
    const char *dots = rangefinddots(element);
    return cutpart(minimum, element, dots != nullptr ? dots : rangefindplusequal(element));
}

bool rangemaxstr(char *maximum, const char *element) {
    const char *dots = rangefinddots(element);
    if (dots != nullptr)
        return cutpart(maximum, dots + 2, rangefindplusequal(dots + 2));
    return cutpart(maximum, rangefindplusequal(element) == nullptr ? element : "", nullptr);
}

bool rangestepstr(char *step, const char *element) {
    const char *plus = rangefindplusequal(element);
    return cutpart(step, plus != nullptr ? plus + 2 : "", nullptr);
}

void rangeswap(RANGE *a, RANGE *b) {
    std::swap(a->value, b->value);
    if (a->text[0] != 0 || b->text[0] != 0)
        std::swap(a->text, b->text);
}

int32_t rangecompare(const RANGE *a, const RANGE *b) {
    if (a->text[0] != 0 && b->text[0] != 0)
        return wildstrcmp(a->text, b->text);
    return a->value < b->value ? -1 : a->value > b->value ? 1 : 0;
}
