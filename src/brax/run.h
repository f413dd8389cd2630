// State that a run of the framework keeps between its calls, and the steps of BRAX_parse in files
// of their own. Private to this folder.
#pragma once

#include "base/options.h"
#include "search/list.h"

#include <string_view>

// The working block: first half the name list of the current batch, second half the option text
// of the run.
extern BRAXBUF optnamebuf;
extern char *namelist;
extern char *optlist;
extern const char *optptr; // position of the scan; null if no run is active
extern char firstcall;     // 1 until the end of the first call of a run

// Made at the start of a run: the address of the program's help page, and the name of the
// environment variable with its default options.
extern char helpaddress[BRAXFIELDSIZE];
extern char optsvariable[BRAXFIELDSIZE];

// A text in the working block with its length.
struct TEXTEND {
    char *text;
    int length;
};

// Appends the text. False, with nothing appended, if the result would not fit half the block; the
// message is "<what> TOO LONG <start of input...>".
bool BRAX_append(TEXTEND *end, std::string_view text, const char *what, const char *input);

// BRAX_responsefile for an output whose length is known.
bool BRAX_appendresponse(const char *specification, TEXTEND *output);

// Replaces every ';' among the blanks and ';' at the end of the text's first `length` characters.
// Returns whether there was one, which ends the batch.
bool BRAX_cutbatchend(char *text, size_t length, char replacement);

// Builds the option text of the run in optlist, and helpaddress.
void BRAX_gather(int argc, char *argv[], const char *name);

// Scans the option text from optptr to the end of the batch: applies the options and collects the
// names. Returns the number of options.
int BRAX_scan();

// Reads the name list into a new search list, which the caller destroys; null when memory runs
// out. If the last name is a directory, it becomes the path rule.
SearchList *BRAX_readnames();
