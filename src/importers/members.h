// The objects of one directory that an importer reads.
#pragma once

#include "base/growtext.h"

// Lists the names in the current directory that match the pattern, in the order of the
// directory, each ended by a zero byte; release with growfree. They are listed before the first
// one is dumped, because dumps add and rename files. False when memory runs out.
bool listmembers(GROWTEXT *members, const char *pattern);
