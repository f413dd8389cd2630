// What a run does after its last batch: it loads the symbol file and reports on it.
#pragma once

// Loads the symbol file and writes the report that the options ask for to the report file, or to
// standard output when that name is null or empty. Returns the result of tvkreport: 0 without a
// message when either file cannot be opened. A static variable keeps the store.
int tolvik(const char *symbolfile, const char *reportfile);
