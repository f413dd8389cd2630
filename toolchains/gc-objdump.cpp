/* gc-objdump -t OBJECT: a stand-in for the GameCube toolchain's objdump. Addresses have eight
   digits whatever the object's class, and section names are one word:

       00000000 g     F .text  0000002c heap_check
       00000000         *UND*  00000000 panic */
#include "shared/objdumplist.h"

#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
    if (argc != 3 || strcmp(argv[1], "-t") != 0) {
        fprintf(stderr, "usage: gc-objdump -t OBJECT\n");
        return 2;
    }
    static const OBJDUMPFORM form = {8, true, false};
    return objdump_run("gc-objdump", argv[2], &form);
}
