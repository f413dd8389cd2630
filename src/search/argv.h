// The files of one batch, as the tool reads them: parallel vectors in which element i of
// each belongs to file i.
//
// MakeArgvs builds them from a search list; they live until freeFiles.
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

// Builds the vectors: every match in list order, and for an entry without one its own
// pattern pair when OPTkeepunfound is set or when it is option-like and OPTkeepopts is set.
// The vectors must be empty before. With nothing to hold, or when memory ran out here or
// during the search, BRAXargnum is 0 and nothing is allocated: half a batch would mislead.
void MakeArgvs(const SearchList *list);

// Releases the vectors and everything in them.
void freeFiles();
