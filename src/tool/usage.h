// The tool's name, version, version history and usage text.
#pragma once

extern const char TextVersion[];
extern const char *const BRAX_history[]; // one line each, ended by an empty text

// Prints the banner; in modes other than 0 the usage line; in mode 2 the short usage; in mode 3 the
// full help with `topic` as the name of the environment variable. Ends the process with status 0
// in modes 1, 2 and 3; else returns 0.
int BRAX_usage(const char *program, const char *topic, const char *address, int mode);
