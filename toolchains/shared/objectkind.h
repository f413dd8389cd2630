/* The kind of a file, from its bytes alone, and the messages for a kind that a stand-in does not
   read. */
#ifndef TOOLCHAINS_OBJECTKIND_H
#define TOOLCHAINS_OBJECTKIND_H

#include "bytes.h"

enum OBJECTKIND {
    KIND_OTHER,
    KIND_ELF,
    KIND_COFF, // i386, x86-64 and ARM, also with more than 65,279 sections, and import records
    KIND_PSX,
    KIND_BITCODE
};

struct FILEKIND {
    bool library;    // ordinary or thin
    OBJECTKIND kind; // of the object, or of the library's first member that is an object
};

OBJECTKIND object_kind(BYTES bytes);

/* path leads to the members of a thin library. */
FILEKIND file_kind(const char *path, BYTES bytes);

/* Complains that the file is not of the kind wanted: names the kind that it has, and the type that
   reads it. A library of the wanted kind is taken for one that was given in place of an object. */
void complain_kind(DUMP *dump, const char *path, FILEKIND found, OBJECTKIND wanted);

/* Maps an object of the kind wanted, for the caller to release with unmap_file. Anything else is
   reported, and false returned. */
bool map_object(DUMP *dump, const char *path, OBJECTKIND wanted, BYTES *bytes);

#endif
