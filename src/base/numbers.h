// Parts of numbers and strings that option values and expressions share.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr bool isoctal(char c) {
    return c >= '0' && c <= '7';
}

// Returns the character that an escape such as \n names; other characters stay as they are.
char escapedchar(char c);

// Returns the radix that a number's prefix selects, or `radix` without one. *prefix receives
// the prefix's length. Two characters of the text are read.
inline uint32_t prefixradix(const char *text, uint32_t radix, size_t *prefix) {
    const char c = text[0];
    const bool x = c == '0' && text[1] == 'x' && radix <= 33;
    *prefix = x ? 2 : c == '@' || c == '$' || c == '&' || c == '%' ? 1 : 0;
    return x || c == '$' || c == '&' ? 16 : c == '@' ? 8 : c == '%' ? 2 : radix;
}

// Returns the radix of a suffix letter, or 0 for any other character.
uint32_t suffixradix(char c);
