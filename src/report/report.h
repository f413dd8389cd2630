// The reports: where symbols are defined, where they are referred to, and which object
// files they bring into a link.
//
// In: a store (symbols/store.h) and the options. Out: plain text, or with `-html` an HTML fragment
// for a page that provides the script function openfile. Read report.cpp first, then filereport.cpp
// and symbolreport.cpp. LINKS IN is computed by:
// - walkfrom (graph.cpp): the file report, and the detailed report on many symbols;
// - symneedfiles and symneedbytes (closure.cpp): the report on a few symbols;
// - linktotals (totals.cpp): the totals in the compact report on many symbols.
// `-html` sets OPThtml in tool/callbacks.cpp. Then putheading (output.h) closes and reopens PRE
// blocks, and printsourcelink (filereport.cpp) writes the links.
//
// Above verbosity 1 the symbol report has sections. Otherwise it has one line a symbol: name,
// defining file, references, own size and size of the closure.
#pragma once

#include "symbols/store.h"

#include <cstdio>

// Writes the symbol report when symbol names are given, else the file report, to the named
// file (created or emptied) or, when the name is null or empty, to standard output. The
// switches choose the sections; the closure has at most `limit` levels. Returns the result of the
// report; 0 without a message when `info` is null or the file cannot be created. Prints an error
// message when the report is not written whole, and removes its file when memory ran out. The
// caller ignores SIGPIPE.
int tvkreport(const char *reportfile, TVKINFO *info, char **symbols, int nsymbols, char **files,
              int nfiles, int define, int refer, int links, int limit);

// Reports on the named symbols, in the order given, or on every symbol when the first name is
// "all". Prints a message on standard error for a name that is not in the store. Returns 1, or 0
// when memory ran out.
int tvksymbolreport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, int define, int refer,
                    int links, int limit);

// Writes one symbol's part of the symbol report. At verbosity 1 it omits a symbol without a file or
// with a file of size 0.
void printsymbolreport(FILE *out, _tagsymbol *symbol, TVKINFO *info, int define, int refer,
                       int links, int limit);

// Reports on every file of the store, or on the named ones (case ignored). The total of a file's
// links is in its FILE line; on standard output, and on an output that cannot be positioned, such
// as a pipe, it follows the list. Returns 1, or 0 when memory ran out.
int tvkfilereport(FILE *out, TVKINFO *info, char **files, int nfiles, int define, int refer,
                  int links, int limit);

// Writes a heading, only above verbosity 1.
void printheader(FILE *out, const char *title);
