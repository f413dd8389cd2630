/* wlib -d=DIRECTORY -x LIBRARY: a stand-in for the PC toolchain's librarian. Extracts every member
   into the directory. */
#include "shared/archive.h"

#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
    if (argc != 4 || strncmp(argv[1], "-d=", 3) != 0 || strcmp(argv[2], "-x") != 0) {
        fprintf(stderr, "usage: wlib -d=DIRECTORY -x LIBRARY\n");
        return 2;
    }
    return archive_extract("wlib", argv[3], argv[1] + 3);
}
