// The part of a store that is shown in a page.
#pragma once

#include "page/pagedata.h"

// Sets `number` of each file of the store, to 0 when the page shows it and to -1 otherwise, by the
// rules of makepagedata. False when memory runs out.
bool choosefiles(const TVKINFO *info, PATTERNS *symbols, PATTERNS *files);
