/* ee-objdump --syms --full-contents OBJECT: a stand-in for the PlayStation 2 toolchain's objdump.
   Addresses have sixteen digits whatever the object's class:

       0000000000000000 g     F .text  000000000000002c heap_check

       Contents of section .rodata:
        0010 6d652f65 76656e74 732e6300 00000000  me/events.c..... */
#include "shared/objdumplist.h"

#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
    if (argc != 4 || strcmp(argv[1], "--syms") != 0 || strcmp(argv[2], "--full-contents") != 0) {
        fprintf(stderr, "usage: ee-objdump --syms --full-contents OBJECT\n");
        return 2;
    }
    static const OBJDUMPFORM form = {16, false, true};
    return objdump_run("ee-objdump", argv[3], &form);
}
