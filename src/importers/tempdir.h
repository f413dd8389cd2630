// The importers' temporary names in the working directory, and the lock that keeps two runs in
// one directory apart.
#pragma once

constexpr char TEMPDIRECTORY[] = "tvk0000"; // receives the members of a library
constexpr char TEMPFILE[] = "tvk0001.tmp";  // receives the listing of one object

// Takes an exclusive flock(2) on the working directory of the first call, held until the process
// ends. When another run holds it: with `wait`, reports this on standard error and waits; else
// returns false. A file system without locks counts as locked.
bool lockworkdir(bool wait);

// Removes the temporary directory and its entries, except directories that are not empty. Does
// nothing when there is none or the name is a file or a symbolic link. Reports nothing.
void cleanup();
