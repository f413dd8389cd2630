// Shared by the two ways of searching: the attribute filter, the matcher's hook, and recording
// a file found. Private to this folder.
#pragma once

#include "base/growtext.h"
#include "search/directory.h"
#include "search/list.h"

// "." or "..".
bool isdots(const char *name);

// Whether the text contains a wildcard as the matcher is set now.
bool holdswildcard(const char *text);

// Whether the hook is case-sensitive. A text without wildcards then matches only itself.
bool hookisexact();

// Sets the text to the name in the directory, with a '/' between them unless the directory ends
// in a separator. False when memory runs out.
bool setjoined(GROWTEXT *text, const char *directory, const char *name);

// Whether an entry of the current directory takes part as a file: it is neither "." nor ".."
// and passes the attribute filter. Fills the record when the filter needs more attributes than
// the directory bit.
bool passesfilter(SGI_finddata *data);

// Matches the name through the path hook; on a match the output holds the destination. Marks
// the entry incomplete when memory runs out.
bool hookmatches(FileInfo *entry, GROWTEXT *output, const char *name, const char *pattern,
                 const char *dest);

// The destination to record: with OPTstrippaths, taken out of the directory. A new text; null,
// with the entry marked incomplete, when memory runs out.
char *recordeddest(FileInfo *entry, const char *directory, const char *dest);

// Adds a match with these names to the entry. Fills `data`, an entry of the current directory,
// when the batch lists sizes, dates or attributes. False when memory runs out.
bool recordfile(FileInfo *entry, SGI_finddata *data, char *source, char *dest);
