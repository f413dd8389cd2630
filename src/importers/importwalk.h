// The walk that the importers share, except SGI's: the objects of a source, the dump of each, and
// the frame of its record. A toolchain adds its commands and how its listing is read.
#pragma once

#include "importers/listing.h"
#include "importers/symbolfile.h"

struct TOOLCHAIN {
    const char *libraryExtension; // text from the first '.' of a name, case ignored
    const char *memberPattern;    // selects the extracted members that are objects
    const char *extract;          // extractor's command up to the library's name
    const char *extractRelative;  // the same for a plain or relative name
    bool extractInside;           // run the extractor inside the temporary directory
    bool mustEnter;               // fail the import when that directory cannot be entered
    const char *dump;             // dump program's command up to the object's name
    const char *dumpEnd;          // and after it
    // Writes the source line before the listing is opened; null when the listing has it. `object`
    // is in the current directory.
    void (*source)(const char *object, FILE *records);
    // Writes the lines of one object's listing, which is at its beginning. Returns its size.
    int64_t (*parse)(FILE *listing, FILE *records);
};

// Imports a source; see IMPORTER for arguments and result.
int tvkwalk(const TOOLCHAIN *toolchain, const char *source, const char *symbolfile);

// Removes the listing of an earlier dump from the current directory and runs the dump command. A
// failure is reported when OPTverbose is above 2. False when the old listing is in the way or a
// signal ended the command; the listing is not to be opened then.
bool rundump(const char *command, const char *object);
