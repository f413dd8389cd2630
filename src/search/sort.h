// Sorting the files of a batch, in place in the argument vectors: an exchange moves the
// elements of all vectors together.
//
// The sort is a randomised quicksort that takes its pivots from the system's unseeded
// rand, so that a run can be repeated. The order in which elements that compare equal come
// out follows from that and is part of what users see: keep the partition's steps and the
// sequence of rand calls as they are.
//
// Keys (`key` below, OPTsorttype): 1 source name, 2 source extension, 3 date, 4 size,
// 5 destination name, 6 destination extension, 7 source name; 0 and any other find every
// pair equal. With `bydirs` 1 the keys 1 and 5 look at the names' directory parts alone and
// 7 at the file part. Texts are compared in natural order; dates and sizes count as equal
// while their vector is missing.
#pragma once

// Natural comparison, case-sensitive: runs of digits (of up to 99 each) compare as numbers,
// everything else as signed characters. -1, 0 or 1; equal numbers with different leading
// zeros count as equal.
int BRAX_strcmp(const char *a, const char *b);

// Compares the elements i and j: -1, 0 or 1.
int BRAX_compare(int i, int j, int key, int bydirs);

// Swaps the elements i and j of all vectors that are there.
void BRAX_exchange(int i, int j);

// Splits low..high (low below high) around the element at low; returns the last index of
// the lower part, which is below high.
int BRAX_partition(int low, int high, int key, int bydirs);

// The same around a random element, never the last one.
int BRAX_randpartition(int low, int high, int key, int bydirs);

// Sorts the elements low to high inclusive. With OPTkeepopts set, elements whose source
// begins with '-' or '.' stay in place and the runs between them are sorted each by itself.
void BRAX_qsort(int low, int high, int key, int bydirs);

// The sorting step of a batch: grouping by directory when OPTsortbydirs is set, then each
// directory's run by the key OPTsorttype, from the element OPTstartsortat on.
void BRAX_sortbatch();
