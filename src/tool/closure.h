// The links-in closure: which object files a symbol brings into a link.
//
// The file that defines the symbol is linked in, and so is, for every symbol that a linked
// file refers to, the file that defines that one. The list is in depth-first order, each
// file where it was first reached; it is not looked at again from a lower level.
#pragma once

#include "tool/store.h"

// One file of a closure, in the order in which the files were reached.
struct _tagfilelist {
    _tagfile *file;
    int level;          // steps from the start at which it was first reached
    _tagsymbol *symbol; // through which it was reached; defined in this file
    _tagfilelist *next;

    _tagfilelist *last; // private: of a list's first entry, its last one
    int64_t stamp;      // private: of a list's first entry, the mark of its files
};

// A new entry with all fields 0 or null; null when memory runs out.
_tagfilelist *flnew();

// Adds to the closure `list` (null for a new one) what the symbol, reached at `level`,
// brings into a link, and returns its head. Files reached at `limit` or beyond are listed
// but not followed. When memory runs out the list is incomplete and closurefailed() true.
_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level);

// Gives a whole closure back for later ones; null is ignored.
void flfree(_tagfilelist *list);

// Whether memory ran out in a closure since the process began.
bool closurefailed();

// Sum of the sizes of the files that the symbol brings into a link, 0 without a file; at
// most 2,147,483,647. What a file links in depends on the file alone, so its sum is found
// once and kept until another limit is asked for.
int32_t closuretotal(_tagsymbol *symbol, int limit);

// Sums saturate at the ends of 32 bits.
int32_t saturated(int64_t sum);
