// Moves the names of a search-list entry into a subdirectory of the starting directory and
// out of it again. These functions work on texts only, not on the file system.
//
// Both '/' and '\' are separators. A "relative directory" is a path as seen from the starting
// directory: it ends in a separator (lib/x/) or is empty. Results are new texts from galloc,
// owned by the caller; null when memory runs out.
#pragma once

// The name after its last '/' or '\'. Unlike filepart, it may contain a ':'.
const char *lastcomponent(const char *name);

// The name moved into the relative directory: a.c with lib/x/ gives lib/x/a.c. A directory that
// the name already begins with is not repeated (lib/*.c gives lib/x/*.c). All separators of the
// result become the last separator of the relative directory.
char *BRAX_makerelative(const char *name, const char *relative);

// Moves *relative past the leading part of [*relative, relativeEnd) that the directory part of
// `name`, which ends at `file`, already has.
void MakeRelative(const char **relative, const char *relativeEnd, const char *name,
                  const char *file);

// Replaces every '/' and '\' of the text by `separator`. A null text is ignored.
void swap_slash(char *text, char separator);

// The position in the name after the leading characters that it shares with the root.
const char *aftershared(const char *name, const char *root);

// A copy of the name from there on. Separators are not special, on purpose: /tmp/ax with the
// root /tmp/ab gives x.
char *BRAX_makerelativeAbs(const char *name, const char *root);

// The destination name taken out of the relative directory. With `separateDest` 0 the source
// served as destination: the first occurrence of the relative directory (case ignored) is cut
// out. Otherwise the result is the name's file part in the directory of the entry's destination
// pattern `dest`. If that is the relative directory itself, the name is not changed.
char *BRAX_makeunrelative(char separateDest, const char *dest, const char *relative,
                          const char *name);
