/* The listing of objdump's symbol table and section contents, as the programs that gc-objdump and
   ee-objdump stand for print it:

       0000000000000000 g     F .text  000000000000002c heap_check

   The flags are local or global, blank for an undefined symbol; 'd' for sections and files; 'F'
   function, 'O' object, 'f' file. A weak definition is global, because a linker finds it; a weak
   reference is left out, because a linker takes no member for it. */
#ifndef TOOLCHAINS_OBJDUMPLIST_H
#define TOOLCHAINS_OBJDUMPLIST_H

#include "elfobject.h"

/* How an object is listed. */
struct OBJDUMPFORM {
    int digits; // of addresses and sizes
    bool word;  // section names are one word
    bool contents;
};

/* Lists the object that path names. The dump's status becomes 1 if something could not be read. */
void objdump_list(DUMP *dump, const char *path, BYTES bytes, const OBJDUMPFORM *form);

#endif
