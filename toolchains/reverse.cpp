/* reverse /nop /macro OBJECT: a stand-in for the PlayStation toolchain's disassembler. It lists the
   blocks and the exported and imported symbols of an object; blocks are not disassembled:

       ; block addr=00000000 size=21c
        XDEF event_post
        XREF panic

   No program of today reads objects of that time, so the object's form is one of our own: a magic
   text, the source's path ended by a NUL, then records to the end of the file. Numbers are
   little-endian.

       "PSXOBJ1\0"  C:\LIB\CORE\EVENTS.C: \0
       'B'  address, 4 bytes  size, 4 bytes                      a block of code or data
       'D'  address, 4 bytes  length, 2 bytes  the name's bytes  an exported symbol
       'R'                    length, 2 bytes  the name's bytes  an imported symbol
       'E'                                                       the end

   examples/psx-object.cpp writes such objects. */
#include "shared/objectkind.h"

#include <string.h>
#include <string>

namespace {

bool read_number(FILE *file, int bytes, unsigned *number) {
    *number = 0;
    for (int byte = 0; byte < bytes; byte++) {
        int value = getc(file);
        if (value == EOF) {
            return false;
        }
        *number |= static_cast<unsigned>(value) << (8 * byte);
    }
    return true;
}

bool skip_heading(FILE *file) {
    fseek(file, 8, SEEK_SET); // after the magic text
    int byte = getc(file);
    while (byte > 0) {
        byte = getc(file);
    }
    return byte == 0;
}

// A name is one word, or the listing would say something else.
bool read_name(FILE *file, std::string *name) {
    unsigned length = 0;
    if (!read_number(file, 2, &length) || !length) {
        return false;
    }
    name->resize(length);
    if (fread(name->data(), 1, length, file) != length) {
        return false;
    }
    for (char byte : *name) {
        if (static_cast<unsigned char>(byte) <= ' ') {
            return false;
        }
    }
    return true;
}

bool list_block(FILE *file) {
    unsigned address = 0;
    unsigned size = 0;
    if (!read_number(file, 4, &address) || !read_number(file, 4, &size)) {
        return false;
    }
    printf("; block addr=%08x size=%x\n", address, size);
    return true;
}

bool list_symbol(FILE *file, bool exported) {
    unsigned address = 0;
    std::string name;
    if ((exported && !read_number(file, 4, &address)) || !read_name(file, &name)) {
        return false;
    }
    printf("\t%s %s\n", exported ? "XDEF" : "XREF", name.c_str());
    return true;
}

// False when the object is damaged; what could be read of it is listed.
bool list_records(FILE *file) {
    for (;;) {
        switch (getc(file)) {
        case 'B':
            if (!list_block(file)) {
                return false;
            }
            break;
        case 'D':
            if (!list_symbol(file, true)) {
                return false;
            }
            break;
        case 'R':
            if (!list_symbol(file, false)) {
                return false;
            }
            break;
        case 'E':
            return true;
        default:
            return false;
        }
    }
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
    FILE *file = fmemopen(const_cast<unsigned char *>(bytes.data), bytes.size, "rb");
    if (!file) {
        perror("reverse");
        return 1;
    }
    if (!skip_heading(file) || !list_records(file)) {
        complain(&dump, argv[3], nullptr, "is damaged");
    }
    fclose(file);
    unmap_file(&bytes);
    return fflush(stdout) || ferror(stdout) ? 1 : dump.status;
}
