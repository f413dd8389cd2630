// The bytes that each object file of a store brings into a link, found for many files at once.
#pragma once

#include "report/graph.h"

// Returns an array with the sum of the sizes of the files in its closure, itself included, at each
// of the `count` file numbers of the walk's graph; the other elements are not set. Files at level
// `limit` are not followed. The caller frees the array with gfree. Null when memory runs out.
int64_t *linktotals(LINKWALK *walk, int limit, const int32_t *files, int32_t count);
