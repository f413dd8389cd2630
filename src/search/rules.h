// The destination rules of a batch: OPTnamerule is the destination pattern of names that have
// none, OPTpathrule moves every destination into one directory, OPTextrule replaces the
// extension of every destination found.
//
// The replace functions write at most BRAXFIELDSIZE bytes. A result that does not fit is
// reported; they return false, and the output is the unchanged name.
#pragma once

#include "search/list.h"

// Applies the name rule and the path rule to the destination pattern of every entry. Called
// before the search with the complete list. The first OPTskiprules entries that are not options
// are skipped, but an empty destination always becomes the source.
void ApplyNameRules(SearchList *list);

// Applies the extension rule to every match's destination, and to the destination pattern of
// entries without a match. Called after the search.
void ApplyExtRule(SearchList *list);

// The name's file part in the directory, with a '/' between them unless the directory ends in a
// separator.
bool replacePath(char *output, const char *name, const char *directory);

// The same, but a directory that ends in ':' keeps the whole name.
bool replacePathAbs(char *output, const char *name, const char *directory);

// The name with its extension replaced by the rule. A '*' in the rule stands for the old
// extension, and a leading '.' is ignored. An empty rule removes the dot as well.
bool replaceExt(char *output, const char *name, const char *rule);
