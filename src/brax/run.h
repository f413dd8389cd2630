// What one run of the framework holds between its calls, and the steps of BRAX_parse that
// have files of their own. Private to the framework.
#pragma once

#include "base/options.h"
#include "search/list.h"

#include <cstddef>

// The working block: the name list of the current batch in its first half, the option
// text of the run in its second.
extern BRAXBUF optnamebuf;
extern char *namelist;
extern char *optlist;
extern const char *optptr;              // where the scan stands; null while no run is under way
extern char firstcall;                  // 1 until the end of the first call of a run
extern char helpaddress[BRAXFIELDSIZE]; // of the program's help page, from the start of the run

// A text of the working block and how long it is, so that appending does not walk it.
struct TEXTEND {
    char *text;
    int length;
};

// Appends `length` characters. Refuses a text beyond its half of the block: "<what> TOO LONG
// <start of input...>"; returns false then, with nothing appended.
bool BRAX_append(TEXTEND *end, const char *text, size_t length, const char *what,
                 const char *input);

// BRAX_responsefile for a text whose length is known.
bool BRAX_appendresponse(const char *specification, TEXTEND *output);

// Name of the environment variable with the program's default options.
const char *BRAX_optsvariable();

// Builds the option text of the run in optlist, and helpaddress.
void BRAX_gather(int argc, char *argv[], const char *name);

// Scans the option text from optptr to the end of the batch, sets option values and
// collects names; returns the number of options met.
int BRAX_scan();

// Reads the name list into a new search list, which the caller destroys; null when memory
// runs out. Sets the path rule when the last name is a directory.
SearchList *BRAX_readnames();
