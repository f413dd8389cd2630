// Search: from the name patterns of a batch to its files.
//
// In: a search list, filled by the caller with pairs of source and destination patterns.
// Out: the argument vectors of argv.h: for every file found, its name and the destination
// name that the match gives. The steps of a batch are ApplyNameRules,
// BRAX_findbatch, ApplyExtRule, MakeArgvs and BRAX_sortbatch. Read first:
//
//     list.h       the search list: patterns and the files found
//     find.h       the search itself: find.cpp (whole directories), follow.cpp (paths)
//     walk.h       the walk through directories; directory.h lists one
//     relative.h   moves names into subdirectories and out of them
//     rules.h      the destination rules
//     argv.h       the argument vectors; sort.h sorts them
//
// Names are matched through the hooks of wild/wild.h. Every function here restores the current
// directory. Directories that cannot be entered or listed are skipped, and a directory is not
// entered again below itself. When memory runs out, the entries concerned are marked
// incomplete, and MakeArgvs then gives no files.
#pragma once

#include "search/list.h"

#include <cstdint>

// Copies the pattern up to its first '/' or '\', or its end, into a buffer as large as the
// pattern. Returns the position of that character.
const char *GetFirstDir(const char *pattern, char *component);

// Follows the pattern from the current directory, one component at a time, and records the files
// that match in the entry. Returns their number.
//
// `prefix` is the directory part already followed, as it must appear in the names (ending in
// '/', or empty). `relativeRoot` is the current directory as seen from the starting directory,
// empty there. It is put before the names, and before destinations that are not absolute. An
// absolute pattern without a prefix is followed from its own start.
int FollowDirs(const char *pattern, FileInfo *entry, const char *relativeRoot, const char *prefix);

// Follows the absolute patterns with wildcards; without OPTkeepunfound also those without. Does
// nothing if OPTrecurse is set, because FindRecursive compares them then. Returns the number of
// files recorded.
int FindAbsolutes(SearchList *list);

// The same for patterns with a relative directory part, from the current directory. `relative` is
// that directory as seen from the starting directory, empty there. If `depth` is not 0, entries
// before OPTstartrecurseat are skipped.
int FindDirs(SearchList *list, const char *relative, int depth);

// Searches the directory `path`; with OPTrecurse 1, also the tree below it. Names are relative to
// `root`; an empty root leaves the path in them, without its first separator. `depth` is 0 for
// the starting directory. Returns the number of files recorded.
//
// Literal names are compared without regard to case, and found once in each directory. They are
// compared only if OPTrecurse is 1 or OPTkeepunfound is 0.
int FindRecursive(const char *path, const char *root, SearchList *list, int depth);

// The search step of a batch: FindAbsolutes, then FindRecursive for the current directory. With
// OPTrecurse 2, FindRecursive for each element of the ';'-separated OPTenvpath instead.
void BRAX_findbatch(SearchList *list);
