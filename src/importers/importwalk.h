// The steps that all importers but SGI's share: extract a library's members, dump each object, and
// write its record. A TOOLCHAIN has the commands and the functions that read a listing.
#pragma once

#include "importers/listing.h"
#include "importers/symbolfile.h"

struct TOOLCHAIN {
    const char *libraryExtension; // text from the first '.' of a name, case ignored
    const char *memberPattern;    // matches the extracted members that are objects
    const char *extract;          // extractor's command up to the library's name
    const char *extractRelative;  // the same for a plain or relative name
    bool extractInside = false;   // run the extractor inside the temporary directory
    bool mustEnter = false;       // fail the import when that directory cannot be entered
    const char *dump;             // dump program's command up to the object's name
    const char *dumpEnd;          // the command's text after the name
    // Writes the source line of an object in the current directory; null when the listing has it.
    void (*source)(const char *object, FILE *records) = nullptr;
    // Writes the lines of one object from its listing. Returns the object's size.
    int64_t (*parse)(FILE *listing, FILE *records);
};

// Imports a source; see IMPORTER for arguments and result.
int tvkwalk(const TOOLCHAIN *toolchain, const char *source, const char *symbolfile);

// Removes the previous listing from the current directory and runs the dump command. Reports a
// failed command when OPTverbose is above 2. False when the previous listing cannot be removed or
// SIGINT or SIGQUIT ended the command; do not open the listing then.
bool rundump(const char *command, const char *object);
