// The bytes that each object file of a store brings into a link, found for all files at once.
#pragma once

#include "report/graph.h"

// Returns for each file number the sum of the sizes of the files in its closure, itself included.
// The caller frees the array with gfree. Null when memory runs out. Files at level `limit` are not
// followed.
int64_t *linktotals(const GRAPH *graph, int limit);
