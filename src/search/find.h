// Looking a batch's patterns up in the file system. Every file that matches an entry of
// the search list is recorded there together with the destination name that the match
// gives.
//
// Names are matched through the hooks of wild/wild.h. The current directory is changed
// during a search and is the same after every function as before it; directories that
// cannot be entered or listed contribute nothing. A directory that is reached again on the
// way below itself is not entered again. When memory runs out, the entries concerned are
// marked incomplete, and MakeArgvs then gives no files.
#pragma once

#include "search/list.h"

#include <cstdint>

// Copies the pattern's characters up to its first '/' or '\', or its end, into a buffer as
// large as the pattern; returns the position where it stopped.
const char *GetFirstDir(const char *pattern, char *component);

// Looks in the current directory for the files that the pattern means, one component at a
// time, and records them in the entry. `prefix` is the directory part followed already, as
// it is to stand in the names (ending in '/', or empty). `relativeRoot` is the current
// directory as seen from the starting directory, put in front of names and of destinations
// that are not absolute; empty there. An absolute pattern without a prefix is followed from
// its own start. Returns the number of files recorded.
int FollowDirs(const char *pattern, FileInfo *entry, const char *relativeRoot, const char *prefix);

// Follows the absolute patterns that hold wildcards (without OPTkeepunfound also the plain
// ones). Does nothing when OPTrecurse is set: FindRecursive compares them then. Returns the
// number of files recorded.
int FindAbsolutes(SearchList *list);

// The same for the patterns with a relative directory part, from the current directory,
// which is called `relative` as seen from the starting directory (empty there). Below it
// (depth not 0) entries before OPTstartrecurseat are left out.
int FindDirs(SearchList *list, const char *relative, int depth);

// Searches the directory `path`, and with OPTrecurse 1 the whole tree below it. Names are
// reported as seen from `root`; an empty root leaves the path in them, less one leading
// separator. `depth` is 0 for the directory where the search starts. Returns the number of
// files recorded.
//
// Literal names are compared without regard to case, once per directory, and only when
// OPTrecurse is 1 or OPTkeepunfound is clear; otherwise they pass on unlooked-for.
int FindRecursive(const char *path, const char *root, SearchList *list, int depth);

// The search step of a batch: FindAbsolutes, then FindRecursive for each element of the
// ';'-separated OPTenvpath when OPTrecurse is 2, else for the current directory.
void BRAX_findbatch(SearchList *list);
