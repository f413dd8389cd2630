/* dumpbin /symbols /out:FILE OBJECT: a stand-in for the PC toolchain's dump program. It writes the
   symbols of a COFF object and the sizes of its sections. */
#include "shared/coff.h"
#include "shared/objectkind.h"

#include <string.h>
#include <strings.h>

namespace {

void list(DUMP *dump, const char *path) {
    BYTES object;
    if (!map_object(dump, path, KIND_COFF, &object)) {
        return;
    }
    if (const char *fault = coff_list(object, dump->out)) {
        complain(dump, path, nullptr, fault);
    }
    unmap_file(&object);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4 || strcasecmp(argv[1], "/symbols") != 0 ||
        strncasecmp(argv[2], "/out:", 5) != 0) {
        fprintf(stderr, "usage: dumpbin /symbols /out:FILE OBJECT\n");
        return 2;
    }
    const char *name = argv[2] + 5;
    // Created even if it stays empty, because importers stop without a listing.
    DUMP dump = {"dumpbin", fopen(name, "we"), stderr, 0};
    if (dump.out) {
        list(&dump, argv[3]);
    }
    if (!dump.out || ferror(dump.out) + fclose(dump.out) != 0) {
        complain(&dump, name, nullptr, "cannot be written");
    }
    return dump.status;
}
