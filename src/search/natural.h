// Natural order of names: runs of digits compare as numbers, everything else as signed
// characters.
#pragma once

#include <cstdint>

// A part of a name; a null `end` means up to the terminator.
struct NAMEPART {
    const char *text;
    const char *end;
};

// Compares two numbers: -1, 0 or 1.
constexpr int numericorder(int64_t a, int64_t b) {
    return a > b ? 1 : a < b ? -1 : 0;
}

// Compares two parts: -1, 0 or 1. A run of up to 99 digits is one number. Numbers that differ
// only in leading zeros are equal.
int naturalorder(NAMEPART a, NAMEPART b);

// Returns the places in natural order of the parts that `part` gives for the elements low to
// high: element i's is at i - low, and equal parts have equal places. Faster than naturalorder
// if the parts are compared many times. The caller frees the array; null when memory runs out.
int32_t *naturalplaces(int low, int high, NAMEPART (*part)(int element));
