/* gc-objdump -t OBJECT: a stand-in for the GameCube toolchain's objdump that rests on today's.

   objdump's own listing is nearly what is wanted:

       00000000 g     F .text  0000002c .hidden heap_check
       00000000  w    F .text  00000002 platform_write
       00000000  w      *UND*  00000000 profiler_mark

   The old program knew no such marks between size and name. A weak definition is shown as a global
   one, because a linker finds it, and a weak reference is left out, because a linker brings nothing
   for it. Addresses have eight digits whatever the object's kind, and section names are one word.
 */
#include "shared/objdump.h"

#include <string.h>

namespace {

void print_symbol(const ELFSYMBOL *symbol) {
    join_words(symbol->section);
    const char *address = symbol->address + strlen(symbol->address) - 8;
    const char *size = symbol->size + strlen(symbol->size) - 8;
    printf("%s %s %s\t%s %s\n", address, symbol->flags, symbol->section, size, symbol->name);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3 || strcmp(argv[1], "-t") != 0) {
        fprintf(stderr, "usage: gc-objdump -t OBJECT\n");
        return 2;
    }
    static const char *const options[] = {"-t", nullptr};
    LISTING listing;
    if (!listing_open(&listing, "gc-objdump", options, argv[2])) {
        return 127;
    }
    for (char *line = listing_line(&listing); line; line = listing_line(&listing)) {
        ELFSYMBOL symbol;
        if (!elf_symbol(line, &symbol)) {
            puts(line);
        } else if (!symbol.optional) {
            print_symbol(&symbol);
        }
    }
    return listing_close(&listing);
}
