// The name list of a batch: sources and destinations as they were typed, one blank behind
// each, and how pairs are read out of it.
#pragma once

// Reads the next name at `position` into `source` and, when it is paired with '=', its
// destination (BRAXFIELDSIZE bytes each); returns the position of the name behind it, or
// null at the end of the list. A destination and a name that begins with '=' also become
// the current name or path rule.
const char *BRAX_nextnames(const char *position, char *source, char *destination);

// Whether the field at `position`, less one leading '=', names a directory.
bool BRAX_isnextfieldpath(const char *position);

// Cuts a text that begins with '=' at its next '='. Returns the length of the cut-off part
// plus one, by which the reader moves back to get it as the next name; 0 without one.
int Unclump(char *text);
