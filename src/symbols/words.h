// Fields of a text line: words, numbers, prefixes and columns. Symbol files and the listings of
// dump programs are read with them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// White space: blank, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool iswhite(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Returns the text before the first `end`; the whole text when there is none.
inline std::string_view upto(std::string_view text, char end) {
    return text.substr(0, text.find(end));
}

// Returns the text from a column, counted from 0; empty when the text is shorter.
inline std::string_view fromcolumn(std::string_view text, size_t column) {
    return text.substr(column < text.size() ? column : text.size());
}

// Whether the word is at the column.
inline bool wordat(std::string_view text, size_t column, std::string_view word) {
    return fromcolumn(text, column).starts_with(word);
}

// Removes the prefix from *text. False when *text begins otherwise.
inline bool takeprefix(std::string_view *text, std::string_view prefix) {
    if (!text->starts_with(prefix))
        return false;
    text->remove_prefix(prefix.size());
    return true;
}

inline void skipwhite(std::string_view *text) {
    while (!text->empty() && iswhite(text->front()))
        text->remove_prefix(1);
}

// Remove white space and then a field from the start of *text. False when there is no field; a
// number keeps its value then, and *text has moved. A number may have a sign, a hexadecimal one
// also "0x"; it saturates at 32 bits.
bool takeword(std::string_view *text, std::string_view *word);
bool takedecimal(std::string_view *text, int32_t *number);
bool takehexadecimal(std::string_view *text, int32_t *number);
