/* The kind of a file by its bytes, and the messages for a wrong kind. */
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

/* Names in a thin library are relative to the directory of path. */
FILEKIND file_kind(const char *path, BYTES bytes);

/* Complains that the file is not of the wanted kind, with its kind and the type that reads it; or,
   for a library of the wanted kind, that it is a library. */
void complain_kind(DUMP *dump, const char *path, FILEKIND found, OBJECTKIND wanted);

/* Maps an object of the wanted kind; the caller frees it with unmap_file. For any other file,
   complains and returns false. */
bool map_object(DUMP *dump, const char *path, OBJECTKIND wanted, BYTES *bytes);

#endif
