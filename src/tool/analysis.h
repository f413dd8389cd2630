// The analysis after the last batch.
#pragma once

// Loads the symbol file and writes the report that the options select to the report file, or to
// standard output when that name is null or empty. Returns the result of tvkreport: 0 without a
// message when a file cannot be opened. Keeps the store until the process ends.
int tolvik(const char *symbolfile, const char *reportfile);
