// The importers' temporary names in the working directory, and the lock against a second process
// that would use them.
#pragma once

constexpr char TEMPDIRECTORY[] = "tvk0000"; // receives the members of a library
constexpr char TEMPFILE[] = "tvk0001.tmp";  // receives the listing of one object

// Takes an exclusive flock(2) on the working directory of the first call, until the process ends.
// When another process holds the lock: with `wait`, reports this on standard error and waits;
// otherwise returns false. Returns true on a file system without locks.
bool lockworkdir(bool wait);

// Removes the temporary directory and its entries, except directories that are not empty. Does
// nothing when there is none, or the name is a file or a symbolic link.
void cleanup();
