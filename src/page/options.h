// The command line of tolvik-page.
#pragma once

#include "page/pagedata.h"

struct PAGEOPTIONS {
    const char *title;        // null when not given
    const char *sourcePrefix; // null when not given
    bool json;
    bool fragment;
    PATTERNS symbols;
    PATTERNS files;
    const char **old; // files of --compare
    int oldCount;
    const char *const *inputs;
    int inputCount; // at least 1
};

// Reads the command line; sets OPTunderscores. Exits after help, version and usage errors, with
// status 0 or 2, and with 1 when memory runs out.
void readoptions(PAGEOPTIONS *options, int argc, char *argv[]);

void freeoptions(PAGEOPTIONS *options);
