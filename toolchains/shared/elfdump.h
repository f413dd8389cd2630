/* The listing of elfdump. */
#ifndef TOOLCHAINS_ELFDUMP_H
#define TOOLCHAINS_ELFDUMP_H

#include "bytes.h"

/* Lists an ELF object, or every member of a library. path is its file name; names in a thin library
   are relative to its directory. Sets the dump's status to 1 if a part cannot be read. */
void elfdump_list(DUMP *dump, const char *path, BYTES bytes);

#endif
