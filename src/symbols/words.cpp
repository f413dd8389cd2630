#include "symbols/words.h"

#include "base/text.h"

#include <algorithm>

namespace {

// Returns the digit's value; 99 for any other character.
int digitvalue(char c) {
    if (isdigitchar(c))
        return c - '0';
    return isletter(c) ? lowerchar(c) - 'a' + 10 : 99;
}

template <int radix> bool takenumber(std::string_view *field, int32_t *number) {
    std::string_view text = *field;
    skipwhite(&text);
    const bool negative = takeprefix(&text, "-");
    if (!negative)
        takeprefix(&text, "+");
    if (radix == 16 && !takeprefix(&text, "0x"))
        takeprefix(&text, "0X");
    const char *p = text.data();
    const char *end = p + text.size();
    int64_t value = 0;
    for (; p < end && digitvalue(*p) < radix; ++p)
        value = value > INT32_MAX ? value : value * radix + digitvalue(*p);
    const bool found = p > text.data();
    if (found)
        *number = toint32(negative ? -value : value);
    *field = {p, static_cast<size_t>(end - p)};
    return found;
}

} // namespace

bool ishexdigit(char c) {
    return digitvalue(c) < 16;
}

bool takeword(std::string_view *text, std::string_view *word) {
    skipwhite(text);
    const auto *end = std::find_if(text->begin(), text->end(), iswhite);
    *word = text->substr(0, static_cast<size_t>(end - text->begin()));
    text->remove_prefix(word->size());
    return !word->empty();
}

bool takedecimal(std::string_view *text, int32_t *number) {
    return takenumber<10>(text, number);
}

bool takehexadecimal(std::string_view *text, int32_t *number) {
    return takenumber<16>(text, number);
}
