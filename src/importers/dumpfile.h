// The file that receives the listing of one object: TEMPFILE in the directory where the dump
// program runs. In the temporary directory it is ours whatever it is; in a user's directory
// only when this run made it, or one that was killed.
#pragma once

#include <cstdio>

// Makes the file in the current directory, which is a user's, and keeps other runs away from it
// until letgodump. What a killed run left, which shows as ours by its sticky bit, is replaced.
// False when something else has the name, another run is using it or no file can be
// made; nothing is changed then.
bool claimdump();

// Removes the file, whatever the dump program made of it, unless it is to stay; the next run
// will replace it. Does nothing without a claim.
void letgodump(bool stay);

// Makes sure that no listing of an earlier member is left in the current directory, which is the
// temporary one. False when that is not possible.
bool removedump();

// Opens the listing in the current directory; null when the dump program wrote none.
FILE *opendump();
