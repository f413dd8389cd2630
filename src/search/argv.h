// The files of one batch, as the tool reads them. Element i of every vector belongs to file i.
#pragma once

#include "search/list.h"

#include <cstdint>

extern int32_t BRAXargnum; // elements in every vector
extern char **BRAXsargv;   // source names, owned
extern char **BRAXdargv;   // destination names, owned

// Null unless OPTmakedatelist, OPTmakesizelist, OPTmakeattriblist is set.
extern int32_t *BRAXdateargv;   // file times in seconds
extern int32_t *BRAXsizeargv;   // sizes in bytes
extern uint8_t *BRAXattribargv; // BRAX_makeattrib

// Builds the vectors from every match in list order; they must be empty before. An entry
// without a match gives its own pattern pair if OPTkeepunfound is set, or if it is option-like
// and OPTkeepopts is set. If there are no files, or memory ran out here or during the search,
// BRAXargnum is 0 and nothing is allocated.
void MakeArgvs(const SearchList *list);

// Frees the vectors and everything in them.
void freeFiles();
