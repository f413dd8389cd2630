// Reads the listings of dump programs line by line; symbols/words.h has the fields of a line.
#pragma once

#include "symbols/words.h"

#include <cstdio>

// A line of a listing with its line feed, terminated.
using LINE = char[256];

// Reads the next line, at most 255 characters; the rest of a longer line is the next line. A zero
// byte ends the text of its line. False at the end of the file.
inline bool nextline(FILE *listing, LINE &line) {
    return fgets(line, sizeof line, listing) != nullptr;
}

// Skips up to `count` lines.
inline void skiplines(FILE *listing, int count) {
    LINE line;
    while (count > 0 && nextline(listing, line))
        --count;
}
