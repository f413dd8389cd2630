// Moving the names of a search-list entry into a subdirectory of the starting directory
// and out of it again. These are operations on texts; no directory is looked at.
//
// '/' and '\' both separate. A "relative directory" is a directory's path seen from the
// starting directory, ending in a separator (lib/x/), or empty. Every result is a new
// text from galloc, owned by the caller; null when memory runs out.
#pragma once

// The name moved into the relative directory: a.c with lib/x/ gives lib/x/a.c. A directory
// that the name begins with already is not put in twice (lib/*.c gives lib/x/*.c), and all
// separators of the result take the form of the relative directory's last one.
char *BRAX_makerelative(const char *name, const char *relative);

// Drops from the front of the relative directory [*relative, relativeEnd) what the
// directory part of `name`, ending at `file`, has already: *relative may move forward.
void MakeRelative(const char **relative, const char *relativeEnd, const char *name,
                  const char *file);

// Turns every '/' and '\' of the text into `separator`; a null text is left alone.
void swap_slash(char *text, char separator);

// The position in the name after the leading characters that it shares with the root.
const char *behindshared(const char *name, const char *root);

// A copy from there on. Separators are not special, deliberately: /tmp/ax with the root /tmp/ab
// gives x.
char *BRAX_makerelativeAbs(const char *name, const char *root);

// The destination name taken out of the relative directory. `separateDest` 0 means that the
// source served as destination: the first occurrence of the relative directory (case
// ignored) is cut out. Otherwise the name keeps its file part and takes the directory of
// the entry's own destination pattern `dest`, unless that is the relative directory itself,
// when the name stays as it is.
char *BRAX_makeunrelative(char separateDest, const char *dest, const char *relative,
                          const char *name);
