/* The listing of gc-objdump and ee-objdump, symbol table and section contents:

       0000000000000000 g     F .text  000000000000002c heap_check

   The flags are local or global, blank for an undefined symbol; 'd' for sections and files; 'F'
   function, 'O' object, 'f' file. A weak definition is global, because a linker finds it. A weak
   reference is not listed, because a linker takes no member for it. */
#ifndef TOOLCHAINS_OBJDUMPLIST_H
#define TOOLCHAINS_OBJDUMPLIST_H

#include "elfobject.h"

/* How an object is listed. */
struct OBJDUMPFORM {
    int digits; // of addresses and sizes
    bool word;  // section names are one word
    bool contents;
};

/* Lists the object; path is its file name. Sets the dump's status to 1 if a part cannot be read. */
void objdump_list(DUMP *dump, const char *path, BYTES bytes, const OBJDUMPFORM *form);

/* Lists the object at path on standard output, for the program called self. Returns the exit
   status. */
int objdump_run(const char *self, const char *path, const OBJDUMPFORM *form);

#endif
