// What every object file of a store brings into a link, in bytes, found for all files at once.
#pragma once

#include "tool/closure.h"

// The sum of the sizes of the files in each file's closure, itself included, by file number:
// an array of galloc that the caller releases with gfree, or null when memory runs out.
// Files at level `limit` are not followed. All links must lead to files of the store's list.
int64_t *linktotals(const LINKS *links, int limit);
