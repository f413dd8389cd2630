// The framework's core: turns a command line into batches of files.
//
//     BRAX_init(reset, usage, option, history);
//     do {
//         more = BRAX_parse(argc, argv, "program", "1.54 ...");
//         // BRAXargnum files: BRAXsargv[i], BRAXdargv[i]
//     } while (more);
//
// The first call of a run gathers the option text: the value of PROGRAM_OPTS from the
// environment, then every argument, with response files expanded where they stand. Each
// call scans it up to the next batch separator (';', or '^' followed by '&').
#pragma once

#include "base/options.h"

// Registers the program's callbacks and version history (any may be null) and sets the
// option defaults.
//
// The usage callback gets (program name, topic, help address, level): level 0 for the
// banner, 4 for help on a topic, else the verbosity at which usage is wanted; its result
// is not used. The option callback gets the text behind an option's '-' and returns the
// position behind what it consumed, or null when the option is not the program's; blanks
// inside one argument are hard spaces in that text.
void BRAX_init(BRAXRESETFUNC reset, BRAXUSAGEFUNC usage, BRAXOPTFUNC option,
               const char *const *history);

// Makes the next batch: option values, and the files in BRAXargnum, BRAXsargv, BRAXdargv
// (see search/argv.h), valid until the next call. True when another batch follows. False
// with no files when help or an error message was printed. `name` is the program's name
// when argv[0] is null or empty; `version` begins with "major.minor".
bool BRAX_parse(int argc, char *argv[], const char *name, const char *version);

// Ends a run: releases what the framework holds. The next BRAX_parse starts again from its
// argument vector.
void BRAX_restore();
