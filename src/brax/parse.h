// The command-line framework: from a command line to batches of files.
//
//     BRAX_init(reset, usage, option, history);
//     do {
//         more = BRAX_parse(argc, argv, "program", "1.54 ...");
//         // BRAXargnum files: BRAXsargv[i], BRAXdargv[i]
//     } while (more);
//
// In: the arguments and the environment variable PROGRAM_OPTS. Out: option values
// (base/options.h) and the files of one batch per call (search/argv.h). The first call of a run
// builds the option text: the variable's value, then every argument, with response files
// expanded. Each call scans it up to the next batch separator: ';', or '^' followed by '&'. Read
// first:
//
//     parse.cpp       one call of BRAX_parse, step by step
//     gather.cpp      builds the option text; response.h expands response files
//     optionscan.cpp  scans it; builtin.h has the built-in options, help.h their help
//     namephase.cpp   fills the search list from the names; names.h reads one
//     run.h           the state shared by these files
//     files.h         loads and saves whole files
#pragma once

#include "base/options.h"

// Registers the program's callbacks and version history (any may be null) and sets the option
// defaults.
//
// The usage callback gets (program name, topic, help address, level): level 0 for the banner,
// 4 for help on a topic, else the verbosity for usage. Its result is not used. The option
// callback gets the text after an option's '-' and returns the position after the option, or
// null if it is not the program's. Blanks inside one argument are hard spaces in that text.
void BRAX_init(BRAXRESETFUNC reset, BRAXUSAGEFUNC usage, BRAXOPTFUNC option,
               const char *const *history);

// Makes the next batch: option values, and the files in BRAXargnum, BRAXsargv and BRAXdargv,
// valid until the next call. Returns true if another batch follows; false, with no files, if
// help or an error message was printed. `name` is the program's name, used if argv[0] is null
// or empty; `version` begins with "major.minor".
bool BRAX_parse(int argc, char *argv[], const char *name, const char *version);

// Ends a run and frees everything the framework holds. The next BRAX_parse starts a new run from
// its arguments.
void BRAX_restore();
