// Reads the listings of dump programs line by line, and the fields of a line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

// A line of a listing, terminated; its line feed stays.
using LINE = char[256];

// Reads the next line, at most 255 characters; the rest of a longer line is the next line. A zero
// byte ends the text of its line. False at the end of the file.
inline bool nextline(FILE *listing, LINE &line) {
    return fgets(line, sizeof line, listing) != nullptr;
}

// Drops up to `count` lines.
void skiplines(FILE *listing, int count);

// White space: blank, tab, line feed, carriage return, form feed, vertical tab.
constexpr bool iswhite(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool ishexdigit(char c);

// The text from a column on, counted from 0; empty when it ends before.
inline std::string_view fromcolumn(std::string_view text, size_t column) {
    return text.substr(column < text.size() ? column : text.size());
}

// Whether the word stands at the column.
inline bool standsat(std::string_view text, size_t column, std::string_view word) {
    return fromcolumn(text, column).substr(0, word.size()) == word;
}

void skipwhite(std::string_view *text);

// These take a field from the front of *text, after white space, and move *text to its end. False
// when there is none; *text has then moved anywhere. A number may have a sign, a hexadecimal one
// "0x"; it saturates at 32 bits.
bool takeword(std::string_view *text, std::string_view *word);
bool takedecimal(std::string_view *text, int32_t *number);
bool takehexadecimal(std::string_view *text, int32_t *number);
