// Natural order of names: runs of digits compare as numbers, everything else as signed
// characters.
#pragma once

#include <cstdint>

// A part of a name; `end` null means up to the terminator.
struct NAMEPART {
    const char *text;
    const char *end;
};

// -1, 0 or 1; runs of up to 99 digits count as one number, and equal numbers with different
// leading zeros as equal.
int naturalorder(NAMEPART a, NAMEPART b);

// Places in natural order of the parts that `part` gives for the elements low to high: element
// i's is at i - low, equal parts have equal places. For comparing many parts many times; the
// caller releases the array with gfree. Null when memory runs out.
int32_t *naturalplaces(int low, int high, NAMEPART (*part)(int element));
