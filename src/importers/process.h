// Running the toolchains' programs, and leaving nothing behind when a signal ends the run.
#pragma once

// Between these two the signals that end a program (SIGINT, SIGTERM, SIGHUP, SIGQUIT) are
// noted instead: whoever sees interrupted() puts back what it has to. endimport then ends
// the process by the signal that was noted, if any, after cleanup(). Signals that the
// process ignores stay ignored. A write into a closed pipe or beyond the limit of file
// sizes is an error meanwhile, not a signal.
void beginimport();
void endimport();

// Whether a signal came since beginimport, or a program ended by SIGINT.
bool interrupted();

// Runs a command of makecommand as `system` would, with standard output flushed before.
// A command that is plain (see plaincommand) is run without a shell in between, which
// doubles the speed of an import; the shell gets it only when that fails, so that the
// messages are the shell's. Does nothing once interrupted(). Whether the program ended with
// status 0; of a pipe, this is the last program's.
bool runcommand(const char *command);
