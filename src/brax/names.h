// Reads the name list of a batch: sources and destinations as typed, one blank after each.
#pragma once

// Reads the name at `position` into `source` and, if '=' pairs it with a destination, that into
// `destination` (BRAXFIELDSIZE bytes each). Returns the position of the next name, or null at
// the end of the list. A destination, and a name that begins with '=', also become the current
// name or path rule.
const char *BRAX_nextnames(const char *position, char *source, char *destination);

// Whether the field at `position`, without one leading '=', is the path of a directory.
bool BRAX_isnextfieldpath(const char *position);

// Cuts a text that begins with '=' at its next '='. Returns the number of
// characters after the cut, plus one; 0 without a second '='. The caller moves back by it to read
// the rest as the next name.
int Unclump(char *text);
