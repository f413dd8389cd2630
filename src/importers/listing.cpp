#include "importers/listing.h"

#include "base/text.h"

#include <algorithm>

void skiplines(FILE *listing, int count) {
    LINE line;
    while (count > 0 && nextline(listing, line))
        --count;
}

void skipwhite(std::string_view *text) {
    size_t count = 0;
    while (count < text->size() && iswhite((*text)[count]))
        ++count;
    text->remove_prefix(count);
}

namespace {

// The digit's value; the radix or more for any other character.
int digitvalue(char c) {
    if (isdigitchar(c))
        return c - '0';
    return isletter(c) ? lowerchar(c) - 'a' + 10 : 99;
}

bool takenumber(std::string_view *text, int radix, int32_t *number) {
    skipwhite(text);
    const bool negative = standsat(*text, 0, "-");
    if (negative || standsat(*text, 0, "+"))
        text->remove_prefix(1);
    if (radix == 16 && (standsat(*text, 0, "0x") || standsat(*text, 0, "0X")))
        text->remove_prefix(2);
    size_t count = 0;
    int64_t value = 0;
    for (; count < text->size() && digitvalue((*text)[count]) < radix; ++count)
        value = value > INT32_MAX ? value : value * radix + digitvalue((*text)[count]);
    text->remove_prefix(count);
    value = negative ? -value : value;
    *number = static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX));
    return count > 0;
}

} // namespace

bool ishexdigit(char c) {
    return digitvalue(c) < 16;
}

bool takeword(std::string_view *text, std::string_view *word) {
    skipwhite(text);
    size_t length = 0;
    while (length < text->size() && !iswhite((*text)[length]))
        ++length;
    *word = text->substr(0, length);
    text->remove_prefix(length);
    return length > 0;
}

bool takedecimal(std::string_view *text, int32_t *number) {
    return takenumber(text, 10, number);
}

bool takehexadecimal(std::string_view *text, int32_t *number) {
    return takenumber(text, 16, number);
}
