/* psylib /x /q LIBRARY: a stand-in for the PlayStation toolchain's librarian. Extracts every member
   into the current directory; a library is an archive of objects in the format in reverse.cpp. */
#include "shared/archive.h"

#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
    if (argc != 4 || strcmp(argv[1], "/x") != 0 || strcmp(argv[2], "/q") != 0) {
        fprintf(stderr, "usage: psylib /x /q LIBRARY\n");
        return 2;
    }
    return archive_extract("psylib", argv[3], ".");
}
