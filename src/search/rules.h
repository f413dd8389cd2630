// The destination rules of a batch: OPTnamerule gives a destination pattern to names that
// have none, OPTpathrule moves every destination into one directory, OPTextrule replaces
// the extension of every destination found.
//
// The rewriting functions write BRAXFIELDSIZE bytes at most. A result that does not fit is
// refused aloud: they return false and the output is the name as it was.
#pragma once

#include "search/list.h"

// Applies the name and the path rule to every entry's destination pattern; called once the
// list is complete, before the search. The first OPTskiprules entries that are not options
// are left alone, except that an empty destination always becomes the source.
void ApplyNameRules(SearchList *list);

// Applies the extension rule to every match's destination, and to the destination pattern
// of entries without a match; called after the search.
void ApplyExtRule(SearchList *list);

// The name's file part in the directory, with a '/' between the two when there is none.
bool replacePath(char *output, const char *name, const char *directory);

// The same, except that a directory ending in ':' keeps the whole name.
bool replacePathAbs(char *output, const char *name, const char *directory);

// The name with its extension replaced by the rule, in which a '*' stands for the old one
// and a leading '.' does not count; an empty rule takes the dot away as well.
bool replaceExt(char *output, const char *name, const char *rule);
