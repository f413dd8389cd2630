/* elfdump -t FILE: a stand-in for the SGI dump program. An object, or every member of a library,
   gets a heading, its sections that take memory, and its global and undefined symbols:

       events.o:

       [1] .text 0x00000000 544 LOCAL SECTION .text
       [2] event_post 0x00000088 184 GLOB FUNC .text
       [3] panic 0x00000000 0 GLOB FUNC UNDEF */
#include "shared/elfdump.h"

#include <locale.h>
#include <string.h>

int main(int argc, char **argv) {
    if (argc != 3 || strcmp(argv[1], "-t") != 0) {
        fprintf(stderr, "usage: elfdump -t FILE\n");
        return 2;
    }
    setlocale(LC_CTYPE, "");
    DUMP dump = {"elfdump", stdout, stderr, 0};
    BYTES bytes;
    if (const char *failure = map_file(argv[2], &bytes)) {
        complain(&dump, argv[2], nullptr, failure);
    } else {
        elfdump_list(&dump, argv[2], bytes);
    }
    return fflush(stdout) || ferror(stdout) ? 1 : dump.status;
}
