// The tool's own options. They are process-wide: tool/callbacks.cpp and main set them; importers,
// loader and reports read them.
#pragma once

#include "base/options.h"

// Object file types of "-t<type>".
enum OBJTYPE { OBJTYPE_SGI = 1, OBJTYPE_N64, OBJTYPE_PC, OBJTYPE_PSX, OBJTYPE_PS2, OBJTYPE_GC };

constexpr int MAXSYMBOLS = 256;
constexpr int MAXFILES = 32;

extern int OPTobjtype;               // OBJTYPE_PC: selects the importer
extern char *OPTsymbols[MAXSYMBOLS]; // names to report on, owned, as typed
extern int OPTnsymbols;              // used entries of OPTsymbols
extern char *OPTfiles[MAXFILES];     // object file names to report on, owned
extern int OPTnfiles;                // used entries of OPTfiles
extern int OPTdefine;                // 0: 1 reports definitions
extern int OPTrefer;                 // 0: 1 reports references
extern int OPTlinks;                 // 0: 1 reports the links-in closure
extern int OPTrecurselevel;          // -1: not given; main sets no limit
extern int OPTunderscores;           // 0: 1 keeps underscores around symbol names
extern int OPTappend;                // 0: 1 keeps an existing symbol file
extern int OPThtml;                  // 0: 1 selects the HTML form of the reports
extern int OPTlibnamefrompath;       // 0: 1 derives the library name from each source path
extern const char *preheader;        // text before every report heading; ""
extern const char *postheader;       // text after it; ""

// Emptied for every batch by BRAX_reset.
extern char OPTsourcelinkprefix[BRAXFIELDSIZE]; // before source links in HTML
extern char OPTlibrary[BRAXFIELDSIZE];          // library name of imported objects

// Flushes standard output and writes a message to standard error.
[[gnu::format(printf, 1, 2)]] void toolsay(const char *format, ...);
