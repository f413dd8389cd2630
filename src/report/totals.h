// What every object file of a store brings into a link, in bytes, found for all files at once.
#pragma once

#include "report/graph.h"

// The sum of the sizes of the files in each file's closure, itself included, by file number:
// an array of galloc that the caller releases with gfree, or null when memory runs out.
// Files at level `limit` are not followed.
int64_t *linktotals(const GRAPH *graph, int limit);
