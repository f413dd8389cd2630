/* ee-objdump --syms --full-contents OBJECT: a stand-in for the PlayStation 2 toolchain's objdump
   that rests on today's.

   Symbols are shown as by the old program: addresses of sixteen digits, no marks between size and
   name, weak definitions as global ones, and no weak references, for which a linker brings nothing.

       0000000000000000 g     F .text  000000000000002c heap_check

   A row of a section's contents has its text from column 43 on. In sections above 64 KiB today's
   objdump makes the offset in front wider, which would move the text, so that only the last four
   digits of the offset are shown:

        0010 6d652f65 76656e74 732e6300 00000000  me/events.c.....
*/
#include "shared/objdump.h"

#include <string.h>

namespace {

enum { OFFSETDIGITS = 4 };

// " OFFSET CONTENTS  TEXT"
void print_row(const char *row) {
    size_t digits = strcspn(row + 1, " ");
    printf(" %s\n", row + 1 + (digits > OFFSETDIGITS ? digits - OFFSETDIGITS : 0));
}

// What is to be put in front of the digits of a 32-bit object.
const char *zeros(const char *digits) {
    static const char all[] = "0000000000000000";
    return all + strlen(digits);
}

void print_symbol(const ELFSYMBOL *symbol) {
    printf("%s%s %s %s\t%s%s %s\n", zeros(symbol->address), symbol->address, symbol->flags,
           symbol->section, zeros(symbol->size), symbol->size, symbol->name);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4 || strcmp(argv[1], "--syms") != 0 || strcmp(argv[2], "--full-contents") != 0) {
        fprintf(stderr, "usage: ee-objdump --syms --full-contents OBJECT\n");
        return 2;
    }
    static const char *const options[] = {"--syms", "--full-contents", nullptr};
    LISTING listing;
    if (!listing_open(&listing, "ee-objdump", options, argv[3])) {
        return 127;
    }
    for (char *line = listing_line(&listing); line; line = listing_line(&listing)) {
        ELFSYMBOL symbol;
        if (line[0] == ' ') {
            print_row(line);
        } else if (!elf_symbol(line, &symbol)) {
            puts(line);
        } else if (!symbol.optional) {
            print_symbol(&symbol);
        }
    }
    return listing_close(&listing);
}
