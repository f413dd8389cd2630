/* reverse /nop /macro OBJECT: a stand-in for the PlayStation toolchain's disassembler. It lists the
   blocks and the exported and imported symbols of an object, without disassembly:

       ; block addr=00000000 size=21c
        XDEF event_post
        XREF panic

   The object's format is our own, because no current program reads the original one: a signature,
   the source's path with its final NUL, then records. Numbers are little-endian.

       "PSXOBJ1\0"  C:\LIB\CORE\EVENTS.C: \0
       'B'  address, 4 bytes  size, 4 bytes                      a block of code or data
       'D'  address, 4 bytes  length, 2 bytes  the name's bytes  an exported symbol
       'R'                    length, 2 bytes  the name's bytes  an imported symbol
       'E'                                                       the end

   examples/psx-object.cpp writes such objects. */
#include "shared/objectkind.h"

#include <algorithm>
#include <string.h>

namespace {

// Takes a field of `size` bytes from the start of *rest. False when *rest is shorter.
bool take_bytes(BYTES *rest, size_t size, BYTES *field) {
    *field = part_of(*rest, 0, size);
    *rest = part_of(*rest, size, rest->size);
    return field->size == size;
}

bool take_number(BYTES *rest, size_t size, unsigned *number) {
    BYTES field;
    bool whole = take_bytes(rest, size, &field);
    *number = 0;
    for (size_t i = 0; i < field.size; i++) {
        *number |= static_cast<unsigned>(field.data[i]) << (8 * i);
    }
    return whole;
}

// Takes a name, which must be one word of the listing.
bool take_name(BYTES *rest, BYTES *name) {
    unsigned length = 0;
    return take_number(rest, 2, &length) && length && take_bytes(rest, length, name) &&
           std::all_of(name->data, name->data + length, [](unsigned char c) { return c > ' '; });
}

bool list_block(BYTES *rest) {
    unsigned address = 0;
    unsigned size = 0;
    if (!take_number(rest, 4, &address) || !take_number(rest, 4, &size)) {
        return false;
    }
    printf("; block addr=%08x size=%x\n", address, size);
    return true;
}

bool list_symbol(BYTES *rest, bool exported) {
    unsigned address = 0;
    BYTES name = {};
    if ((exported && !take_number(rest, 4, &address)) || !take_name(rest, &name)) {
        return false;
    }
    printf("\t%s %.*s\n", exported ? "XDEF" : "XREF", static_cast<int>(name.size),
           reinterpret_cast<const char *>(name.data));
    return true;
}

// Lists the records up to the end or to a damaged one. False for a damaged object.
bool list_records(BYTES object) {
    BYTES rest = part_of(object, 8, object.size); // after the magic text
    BYTES field = part_of(rest, 0, strnlen(reinterpret_cast<const char *>(rest.data), rest.size));
    rest = part_of(rest, field.size, rest.size);
    bool whole = take_bytes(&rest, 1, &field); // the path's NUL
    while (whole && take_bytes(&rest, 1, &field) && *field.data != 'E') {
        whole = *field.data == 'B' ? list_block(&rest)
                                   : (*field.data == 'D' || *field.data == 'R') &&
                                         list_symbol(&rest, *field.data == 'D');
    }
    return whole && field.size;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4 || strcmp(argv[1], "/nop") != 0 || strcmp(argv[2], "/macro") != 0) {
        fprintf(stderr, "usage: reverse /nop /macro OBJECT\n");
        return 2;
    }
    DUMP dump = {"reverse", stdout, stderr, 0};
    BYTES bytes;
    if (!map_object(&dump, argv[3], KIND_PSX, &bytes)) {
        return 1;
    }
    if (!list_records(bytes)) {
        complain(&dump, argv[3], nullptr, "is damaged");
    }
    unmap_file(&bytes);
    return fflush(stdout) || ferror(stdout) ? 1 : dump.status;
}
