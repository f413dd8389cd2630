#include "importers/importwalk.h"

#include "base/text.h"
#include "importers/command.h"
#include "importers/extract.h"
#include "importers/members.h"
#include "importers/paths.h"
#include "importers/tempdir.h"
#include "symbols/options.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct IMPORT {
    const TOOLCHAIN *toolchain;
    const char *source;
    bool library;
    SGI_place home; // the working directory
    FILE *records;
};

bool islibrary(const TOOLCHAIN *toolchain, const char *source) {
    const char *extension = strchr(source, '.');
    return extension != nullptr && stricmp(extension, toolchain->libraryExtension) == 0;
}

// Lets the lower-case name lead to the object: members are renamed, an object of the user's gets a
// link beside it. False when that is not possible, another file has the name, or the listing will.
bool lowerobject(const IMPORT *import, const char *object, const char *name) {
    struct stat status = {};
    if (lstat(name, &status) == 0 || strcmp(name, TEMPFILE) == 0)
        return false;
    return (import->library ? rename(object, name) : symlink(object, name)) == 0;
}

// Dumps the object and opens its listing; null when there is none.
FILE *opendump(const IMPORT *import, const char *object) {
    const TOOLCHAIN *toolchain = import->toolchain;
    char command[COMMANDSIZE];
    const bool dumped = makecommand(command, toolchain->dump, object, toolchain->dumpEnd) &&
                        rundump(command, object);
    if (toolchain->source != nullptr && importsignal() == 0)
        toolchain->source(object, import->records);
    return dumped ? fopen(TEMPFILE, "re") : nullptr;
}

// Appends the record of an object in the current directory. False when the walk ends here.
bool importobject(const IMPORT *import, const char *object) {
    char name[BRAXFIELDSIZE];
    copytext(name, object, sizeof name);
    lowertext(name);
    recordobject(import->records, pathfilename(name));
    if (OPTverbose > 1)
        printf("tolvik: extracting symbols from %s\n", pathfilename(name));
    const bool lowered = strcmp(name, object) != 0 && lowerobject(import, object, name);
    FILE *listing = opendump(import, lowered ? name : object);
    if (lowered && !import->library)
        unlink(name);
    if (listing == nullptr) {
        if (importsignal() == 0)
            toolsay("tolvik: ERROR: couldn't open temp file for reading\n");
        return false;
    }
    recordsize(import->records, import->toolchain->parse(listing, import->records));
    fclose(listing);
    return true;
}

// Imports the objects in a directory that match the pattern; 0 when memory runs out.
int walkobjects(const IMPORT *import, const char *directory, const char *pattern) {
    GROWTEXT members = {};
    bool listed = true;
    if (chdir(directory) == 0) {
        listed = listmembers(&members, pattern);
        const char *end = members.text + members.length;
        for (const char *object = members.text; listed && object < end;
             object += strlen(object) + 1) {
            if (!importobject(import, object))
                break;
        }
        growfree(&members);
    }
    unlink(TEMPFILE);
    SGIreturn(&import->home);
    return listed ? 1 : 0;
}

int importlibrary(const IMPORT *import) {
    if (OPTverbose > 1)
        toolsay("tolvik: extracting files from %s\n", import->source);
    if (OPTlibnamefrompath != 0)
        getlibnamefrompath(import->source);
    cleanup();
    if (!extractlibrary(import->toolchain, import->source, &import->home))
        return 0;
    if (importsignal() != 0)
        return 1;
    return walkobjects(import, TEMPDIRECTORY, import->toolchain->memberPattern);
}

int importsingle(const IMPORT *import) {
    char directory[BRAXFIELDSIZE];
    if (OPTlibnamefrompath != 0)
        getlibnamefrompath(import->source);
    BRAX_getpath(directory, import->source);
    return walkobjects(import, directory[0] != 0 ? directory : ".", filepart(import->source));
}

} // namespace

int tvkwalk(const TOOLCHAIN *toolchain, const char *source, const char *symbolfile) {
    IMPORT import = {.toolchain = toolchain,
                     .source = source,
                     .library = islibrary(toolchain, source),
                     .home = {},
                     .records = nullptr};
    if (access(source, R_OK) != 0 || !SGIsaveplace(&import.home))
        return 0;
    int result = 0;
    import.records = openrecords(symbolfile);
    if (import.records != nullptr) {
        result = import.library ? importlibrary(&import) : importsingle(&import);
        result &= closerecords(import.records, symbolfile);
    }
    SGIforgetplace(&import.home);
    return result;
}

bool rundump(const char *command, const char *object) {
    if (unlink(TEMPFILE) != 0 && errno != ENOENT)
        return false;
    if (!runcommand(command) && OPTverbose > 2 && importsignal() == 0)
        toolsay("tolvik: ERROR: the dump of '%s' failed\n", object);
    return importsignal() == 0;
}
