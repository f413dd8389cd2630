// Reads the listings of dump programs line by line, and the fields of a line.
//
// A line of any length is one line; only its first LINELIMIT characters are kept. A zero
// byte ends the text of its line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

constexpr size_t LINELIMIT = 65536;

// A listing being read. The file stays the caller's.
struct LISTING {
    FILE *file;
    const char *next; // the bytes from here to `end` are not yet handed out
    const char *end;
    char buffer[2 * LINELIMIT];
};

// One line, which lives until the next one is read.
struct LINE {
    std::string_view text; // without its line feed
    bool ended;            // by a line feed
};

// Starts at the file's current position.
void startlisting(LISTING *listing, FILE *file);

// Takes the next line; false at the end of the file and once the import is interrupted().
bool nextline(LISTING *listing, LINE *line);

// Drops up to `count` lines; false when the file ends before.
bool skiplines(LISTING *listing, int count);

// The length as the listing's columns count it, line feed included.
inline size_t fulllength(const LINE *line) {
    return line->text.size() + (line->ended ? 1 : 0);
}

// Whether the text goes up to the line feed, with no zero byte between.
inline bool reachesend(const LINE *line) {
    return line->ended && line->text.data()[line->text.size()] == '\n';
}

// Whether the line begins with its line feed.
inline bool isemptyline(const LINE *line) {
    return line->text.empty() && reachesend(line);
}

// White space: blank, tab, line feed, carriage return, form feed, vertical tab.
constexpr bool iswhite(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool ishexdigit(char c);

// The text from a column on (counted from 0); empty when it ends before.
inline std::string_view fromcolumn(std::string_view text, size_t column) {
    return text.substr(column < text.size() ? column : text.size());
}

// Whether the word stands at the column.
inline bool standsat(std::string_view text, size_t column, std::string_view word) {
    return fromcolumn(text, column).substr(0, word.size()) == word;
}

// These three take a field from the front of *text, white space before it skipped, and move
// *text behind it; false, with *text wherever it got to, when there is none. Numbers may have
// a sign, hexadecimal ones a "0x"; they saturate.
bool takeword(std::string_view *text, std::string_view *word);
bool takedecimal(std::string_view *text, int32_t *number);
bool takehexadecimal(std::string_view *text, int32_t *number);
