// What the importers of the toolchains with libraries share: which objects a source stands
// for, running the dump program on each, and the frame of its record. A toolchain adds its
// commands and how its listing is read.
#pragma once

#include "importers/listing.h"
#include "importers/symbolfile.h"

struct TOOLCHAIN {
    const char *libraryExtension; // from the first '.' of a name, case ignored
    const char *memberPattern;    // the extracted members that are objects
    const char *extract;          // the extractor's command up to the library's name, and
    const char *extractRelative;  // the same for a plain or relative name
    bool extractInside;           // the extractor runs inside the temporary directory
    bool mustEnter;               // failing to enter that directory is a failed import
    const char *dump;             // the dump program's command up to the object's name, and
    const char *dumpEnd;          // from there on
    // Adds the object's lines and sizes to its record. `object` is its name in the current
    // directory.
    void (*parse)(LISTING *listing, const char *object, RECORDS *records);
};

// Imports a source; see IMPORTER for its arguments and results.
int tvkwalk(const TOOLCHAIN *toolchain, const char *source, const char *symbolfile);

// Whether the path is temporary: in a directory TEMPDIRECTORY, or a link beside an object that is
// being dumped. A search meets such names beside another run.
bool istemporary(const char *path);

// Whether a source is a file that can be read, not a pipe, which would be waited for, and not
// the temporary file, which would be dumped into itself.
bool isimportable(const char *source);
