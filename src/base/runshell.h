// Runs shell commands.
#pragma once

// Flushes standard output, runs the command with system(3) and returns the status. The first call
// of an installed program appends the directory of its stand-ins, ../lib/tolvik, to PATH, so that a
// vendor's program is found first. Without that directory or PATH the environment stays as it is.
int runshell(const char *command);
