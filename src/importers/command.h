// The text of the commands that importers run.
#pragma once

#include "brax/options.h"

// Room for the longest command: every character of a name may take three.
constexpr int COMMANDSIZE = 3 * BRAXFIELDSIZE + 256;

// Puts a file name between the two parts of a command, so that the program receives that
// very name: ordinary characters stand as they are, others are quoted for the shell; a name
// that the shell or the program would take for something else (an option, a response file, a
// home directory, a descriptor's number) begins with "./". When the first part ends with a
// backslash, this covers the name's first character. False when the command does not fit
// COMMANDSIZE bytes.
bool makecommand(char *command, const char *before, const char *name, const char *after);

// A command that needs no shell: a program's words and the file that receives its output.
constexpr int PLAINWORDS = 8;
struct PLAINCOMMAND {
    char text[COMMANDSIZE];      // holds the words
    char *words[PLAINWORDS + 1]; // ended by a null
    const char *output;          // null when the output is not redirected
};

// Takes a command of makecommand apart as the shell would. False when it holds anything but
// words and one output file, such as a pipe.
bool plaincommand(PLAINCOMMAND *plain, const char *command);
