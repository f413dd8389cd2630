/* The listing of elfdump. */
#ifndef TOOLCHAINS_ELFDUMP_H
#define TOOLCHAINS_ELFDUMP_H

#include "bytes.h"

/* Lists an ELF object, or every member of a library. path names it, and leads to the members of a
   thin library. The dump's status becomes 1 if something could not be read. */
void elfdump_list(DUMP *dump, const char *path, BYTES bytes);

#endif
