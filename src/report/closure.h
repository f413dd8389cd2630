// The links-in closure: which object files a symbol brings into a link.
//
// The file that defines the symbol is linked in, and so is, for every symbol that a linked
// file refers to, the file that defines that one. The list is in depth-first order, each
// file where it was first reached; it is not looked at again from a lower level.
#pragma once

#include "symbols/store.h"

// Adds to the closure `list` (null for a new one) what the symbol, reached at `level`,
// brings into a link, and returns its head. Files reached at `limit` or beyond are listed
// but not followed. When memory runs out the list is incomplete and closurefailed() true.
_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level);

// Releases a whole closure for later ones; null is ignored.
void flfree(_tagfilelist *list);

// Whether memory ran out in the closure that was begun last.
bool closurefailed();

// Obtains the memory of a closure of all files of the store's list; false when there is none.
bool closurereserve(const TVKINFO *info);

// Sums saturate at the ends of 32 bits.
int32_t saturated(int64_t sum);
