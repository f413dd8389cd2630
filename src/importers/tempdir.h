// The importers' temporary names in the working directory, and the lock that keeps two runs
// in one directory from disturbing each other through them.
//
// A run holds the lock from before it changes a symbol file until it has read it for the report.
// The lock is on the directory itself, so no file is added for it; it is advisory, and where a
// file system has none the run goes on without.
#pragma once

constexpr char TEMPDIRECTORY[] = "tvk0000"; // receives the members of a library
constexpr char TEMPFILE[] = "tvk0001.tmp";  // receives the listing of one object

// Waits until no other run imports in the current directory, saying on standard error that
// it waits, and keeps others away from then on. Does nothing when this run does so already.
// What is left in the temporary directory is removed when the process ends.
void holdworkdir();

// The same for a run that only reads symbol files: others that only read may go on beside it.
void awaitimports();

// Lets other runs go on, at the latest done by the end of the process.
void letgoworkdir();

// Removes the temporary directory with all that is in it, also what an extractor put into
// directories there. Does nothing when there is none, when another run is using it, or when
// the name is a file or a symbolic link; nothing outside it is ever removed. Says nothing.
void cleanup();
