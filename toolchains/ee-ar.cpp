/* ee-ar x LIBRARY: a stand-in for the PlayStation 2 toolchain's archiver. Extracts every member
   into the current directory. Today's ar fails for a member whose name has a directory that does
   not exist, and keeps one of several members of the same name. */
#include "shared/archive.h"

#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
    if (argc != 3 || strcmp(argv[1], "x") != 0) {
        fprintf(stderr, "usage: ee-ar x LIBRARY\n");
        return 2;
    }
    return archive_extract("ee-ar", argv[2], ".");
}
