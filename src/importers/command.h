// The commands that importers run, through the shell.
#pragma once

#include "base/options.h"

// Size of a command. Each character of a name takes up to three bytes.
constexpr int COMMANDSIZE = 3 * BRAXFIELDSIZE + 256;

// Writes the command `before` name `after`, COMMANDSIZE bytes. Quotes the name's special characters
// so that the program receives the name unchanged. A name that begins with '-', '@' or '~', or
// that the shell would read as a descriptor number, gets the prefix "./". A backslash at the end
// of `before` quotes the name's first character. False when the command does not fit.
bool makecommand(char *command, const char *before, const char *name, const char *after);

// Runs the command with runshell. False when its status is not 0.
bool runcommand(const char *command);

// Returns SIGINT or SIGQUIT when a command of this process died of it, else 0.
int importsignal();
