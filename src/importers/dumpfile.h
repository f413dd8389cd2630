// The file that receives the listing of one object: TEMPFILE in the directory where the dump
// program runs. The name is tolvik's own, and what has it is a listing of an earlier run, unless
// another run holds it.
#pragma once

#include <cstdio>

// Makes the file in the current directory, which is a user's, in place of what has its name, and
// keeps other runs away from it until letgodump. False when a directory has the name, no file
// can be made, or another run is using it; with `wait` that run's end is awaited, and said.
bool claimdump(bool wait);

// Removes the file, whatever the dump program made of it, unless it is to stay; the next run
// will replace it. Does nothing without a claim.
void letgodump(bool stay);

// Makes sure that no listing of an earlier member is left in the current directory, which is the
// temporary one. False when that is not possible.
bool removedump();

// Opens the listing in the current directory; null when the dump program wrote none.
FILE *opendump();
