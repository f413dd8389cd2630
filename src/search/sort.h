// Sorts the files of a batch in place: an exchange moves the elements of all vectors.
//
// The sort is a randomised quicksort whose pivots come from the system's unseeded rand, so a
// run can be repeated. The order of equal elements depends on that and is visible to users: the
// steps of the partition and the sequence of rand calls must not change.
//
// Keys (`key` below, OPTsorttype): 1 source name, 2 source extension, 3 date, 4 size,
// 5 destination name, 6 destination extension, 7 source name. For 0 and other keys all elements
// are equal. With `bydirs` 1 the keys 1 and 5 compare only the names' directory parts, and 7 the
// file parts. Texts compare in natural order. Without their vector, dates and sizes are equal.
#pragma once

// Compares in natural order (see natural.h), case-sensitive: -1, 0 or 1.
int BRAX_strcmp(const char *a, const char *b);

// Compares the elements i and j: -1, 0 or 1.
int BRAX_compare(int i, int j, int key, int bydirs);

// Exchanges the elements i and j of all vectors that are allocated.
void BRAX_exchange(int i, int j);

// Splits low..high (low below high) around the element at low. Returns the last index of the
// lower part, which is below high.
int BRAX_partition(int low, int high, int key, int bydirs);

// The same around a random element, never the last one.
int BRAX_randpartition(int low, int high, int key, int bydirs);

// Sorts the elements low to high, both included. With OPTkeepopts set, elements whose source
// begins with '-' or '.' stay in place, and each run between them is sorted by itself.
void BRAX_qsort(int low, int high, int key, int bydirs);

// The sorting step of a batch, from the element OPTstartsortat on: groups by directory if
// OPTsortbydirs is set, then sorts each directory's run by the key OPTsorttype.
void BRAX_sortbatch();
