// What the two ways of searching share: the attribute filter, a name's test through the
// matcher's hook, and recording what was found. Private to this folder.
#pragma once

#include "base/growtext.h"
#include "search/directory.h"
#include "search/list.h"

// The name behind its last '/' or '\'; unlike for filepart, a ':' belongs to it.
const char *lastcomponent(const char *name);

// "." or "..".
bool isdots(const char *name);

// Whether the text holds a wildcard as the matcher sees it now, whatever else it may be.
bool holdswildcard(const char *text);

// Whether the hook tells cases apart. Then a text without wildcards matches itself alone,
// and need not be compared with every name of a directory.
bool hookisexact();

// Whether an entry of the current directory takes part as a file: it is neither "." nor
// ".." and passes the attribute filter. Learns the entry's attributes when the filter asks
// for more than the directory bit.
bool passesfilter(SGI_finddata *data);

// Tests the name through the path hook; on a match the output holds the destination. Marks
// the entry incomplete when memory runs out.
bool hookmatches(FileInfo *entry, GROWTEXT *output, const char *name, const char *pattern,
                 const char *dest);

// The destination as it is recorded: with OPTstrippaths taken out of the directory. A new
// text; null, and the entry marked incomplete, when memory runs out.
char *recordeddest(FileInfo *entry, const char *directory, const char *dest);

// Records a file of the current directory under the names given. Learns from the entry
// what the batch's lists ask for.
bool recordfile(FileInfo *entry, SGI_finddata *data, char *source, char *dest);
