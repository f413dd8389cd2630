// The links-in closure of a symbol, as a list: the object files that it brings into a link.
//
// The file that defines the symbol is linked in, and for every symbol that a linked file refers to,
// the file that defines it. The list is in depth-first order, each file where it was first reached;
// a file is not followed again from a lower level.
#pragma once

#include "symbols/store.h"

// Appends the files that the symbol, reached at `level`, brings into a link to the closure `list`,
// null for a new one, and returns its head. Files at `limit` or beyond are listed but not followed.
// When memory runs out, the list is incomplete and closurefailed() true.
_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level);

// Returns the sum of the sizes of the files in symneedfiles(symbol, nullptr, limit, 0). Making that
// list would take most of the time. When memory runs out, closurefailed() is true.
int64_t symneedbytes(_tagsymbol *symbol, int limit);

// Frees a whole closure for reuse; ignores null.
void flfree(_tagfilelist *list);

// Whether memory ran out since the last call of symneedbytes, or of symneedfiles with a null list.
bool closurefailed();

// Returns the number of references that all calls of symneedfiles and symneedbytes followed.
int64_t closurerefs();
