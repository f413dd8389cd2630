// The commands that importers run, through the shell.
#pragma once

#include "base/options.h"

// Size of a command: each character of a name takes up to three.
constexpr int COMMANDSIZE = 3 * BRAXFIELDSIZE + 256;

// Puts a file name between two parts of a command, quoted so that the program receives that
// very name; ordinary characters stay as they are. A name that begins with '-', '@' or '~', or
// that the shell would read as a descriptor's number, gets "./" in front. When the first part
// ends with a backslash, this quotes the name's first character. False when the command does not
// fit COMMANDSIZE bytes.
bool makecommand(char *command, const char *before, const char *name, const char *after);

// Flushes standard output and runs the command with system(3). False when its status is not 0.
bool runcommand(const char *command);

// SIGINT or SIGQUIT when a command died of it since the program began, else 0.
int importsignal();
