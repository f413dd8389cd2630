// The reports: where symbols are defined, where they are referred to, and which object
// files they bring into a link, as plain text or as an HTML fragment for inclusion in a
// page (OPThtml; headings then close and reopen PRE blocks, and source links call a script
// function openfile that the page provides).
//
// Above verbosity 1 the symbol report is in sections; otherwise it is one line a symbol:
// name, defining file, references, own size and size of everything linked in.
#pragma once

#include "symbols/store.h"

#include <cstdio>

// Writes the symbol report when symbol names are given, else the file report, to the named
// file (created or emptied) or, when the name is null or empty, to standard output. The
// switches choose the sections; `limit` is how many levels the closure follows. Returns the
// result of the report; 0 without a message when there is no store or the file cannot be created.
// A report that could not be written gives one error message; its file is removed when memory
// ran out.
int tvkreport(const char *reportfile, TVKINFO *info, char **symbols, int nsymbols, char **files,
              int nfiles, int define, int refer, int links, int limit);

// The report on the named symbols, in the order given, or on every symbol when the first
// name is "all". A name that is not in the store gives a message on standard error.
// Returns 1, or 0 when memory ran out.
int tvksymbolreport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, int define, int refer,
                    int links, int limit);

// One symbol's part of the symbol report. At verbosity exactly 1 a symbol whose file has no
// size (or that has no file) is left out.
void printsymbolreport(FILE *out, _tagsymbol *symbol, TVKINFO *info, int define, int refer,
                       int links, int limit);

// The report on every file of the store, or on those whose names are given (case ignored).
// The total of a file's links stands in its FILE line; on standard output and on an output
// that cannot be positioned, such as a pipe, it follows the list. Returns 1, or 0 when
// memory ran out.
int tvkfilereport(FILE *out, TVKINFO *info, char **files, int nfiles, int define, int refer,
                  int links, int limit);

// A heading, only above verbosity 1.
void printheader(FILE *out, const char *title);
