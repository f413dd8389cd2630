#include "importers/importwalk.h"

#include "brax/text.h"
#include "importers/command.h"
#include "importers/dumpfile.h"
#include "importers/extract.h"
#include "importers/lowered.h"
#include "importers/members.h"
#include "importers/process.h"
#include "importers/tempdir.h"
#include "tool/options.h"
#include "tool/paths.h"

#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct IMPORT {
    const TOOLCHAIN *toolchain;
    const char *source;
    bool library;
    char directory[BRAXFIELDSIZE]; // of a single object as its source names it
    SGI_place home;                // the working directory
    RECORDS records;
    bool dumped; // whether the dump program of the current object did not fail
};

bool islibrary(const TOOLCHAIN *toolchain, const char *source) {
    const char *extension = strchr(source, '.');
    return extension != nullptr && stricmp(extension, toolchain->libraryExtension) == 0;
}

// Runs the dump program and opens its listing; null when there is none.
FILE *rundump(IMPORT *import, const char *name) {
    char command[COMMANDSIZE];
    if (!makecommand(command, import->toolchain->dump, name, import->toolchain->dumpEnd))
        return nullptr;
    import->dumped = runcommand(command);
    return opendump();
}

// The listing of a member, which may get another name, in *lowered.
FILE *dumpmember(IMPORT *import, LOWERED *lowered, const char **member) {
    lowermember(lowered, *member);
    FILE *file = removedump() ? rundump(import, dumpname(lowered, *member)) : nullptr;
    *member = unlower(lowered, *member);
    return file;
}

// The listing of an object in a user's directory.
FILE *dumpobject(IMPORT *import, LOWERED *lowered, const char *object) {
    FILE *file = nullptr;
    fflush(stdout); // while nothing of ours stands in the user's directory
    if (lowerobject(lowered, object, import->directory, &import->home)) {
        file = rundump(import, dumpname(lowered, object));
        unlower(lowered, object);
    }
    return file;
}

// Says what is wrong with the dump of an object.
void judgedump(const IMPORT *import, FILE *file, const char *shown) {
    struct stat status = {};
    if (file == nullptr)
        toolsay("tolvik: ERROR: couldn't open temp file for reading\n");
    else if (!import->dumped)
        toolsay("tolvik: ERROR: the dump of '%s' failed\n", shown);
    else if (OPTverbose > 0 && fstat(fileno(file), &status) == 0 && status.st_size == 0)
        toolsay("tolvik: WARNING: the dump of '%s' is empty\n", shown);
}

// Appends the record of an object in the current directory. False when the walk ends here.
bool importobject(IMPORT *import, const char *object) {
    LOWERED lowered;
    LISTING listing;
    char shown[BRAXFIELDSIZE];
    copytext(shown, pathfilename(object), sizeof shown);
    lowertext(shown);
    recordobject(&import->records, shown);
    if (OPTverbose > 1)
        printf("tolvik: extracting symbols from %s\n", shown);
    import->dumped = true;
    FILE *file = import->library ? dumpmember(import, &lowered, &object)
                                 : dumpobject(import, &lowered, object);
    if (!interrupted())
        judgedump(import, file, shown);
    if (file == nullptr)
        return false;
    startlisting(&listing, file);
    import->toolchain->parse(&listing, object, &import->records);
    fclose(file);
    if (interrupted())
        return false;
    recordsize(&import->records);
    return !import->records.failed;
}

// The objects that match the pattern in a directory, seen from home. 0 when memory runs out.
int walkobjects(IMPORT *import, const char *directory, const char *pattern) {
    MEMBERS members = {};
    if (chdir(directory) != 0)
        return 1;
    const bool listed = listmembers(&members, pattern);
    const char *object = nextmember(&members, nullptr);
    while (object != nullptr && !interrupted() && importobject(import, object))
        object = nextmember(&members, object);
    freemembers(&members);
    if (import->library)
        removedump();
    SGIreturn(&import->home);
    if (!listed)
        toolsay("tolvik: ERROR: out of memory reading '%s'\n", import->source);
    return listed ? 1 : 0;
}

int importlibrary(IMPORT *import) {
    if (OPTverbose > 1)
        toolsay("tolvik: extracting files from %s\n", import->source);
    if (OPTlibnamefrompath != 0)
        getlibnamefrompath(import->source);
    cleanup();
    if (!extractlibrary(import->toolchain, import->source, &import->home))
        return 0;
    return walkobjects(import, TEMPDIRECTORY, import->toolchain->memberPattern);
}

int importsingle(IMPORT *import) {
    const char *name = filepart(import->source);
    if (!copytext(import->directory, import->source, static_cast<size_t>(name - import->source),
                  sizeof import->directory))
        return 0;
    if (OPTlibnamefrompath != 0)
        getlibnamefrompath(import->source);
    return walkobjects(import, import->directory[0] != 0 ? import->directory : ".", name);
}

int importsource(IMPORT *import, const char *symbolfile) {
    if (!SGIsaveplace(&import->home))
        return 0;
    int result = 0;
    if (openrecords(&import->records, symbolfile)) {
        result = import->library ? importlibrary(import) : importsingle(import);
        if (!closerecords(&import->records, interrupted()))
            result = 0;
    }
    SGIforgetplace(&import->home);
    return result;
}

} // namespace

int tvkwalk(const TOOLCHAIN *toolchain, const char *source, const char *symbolfile) {
    IMPORT import;
    import.toolchain = toolchain;
    import.source = source;
    import.library = islibrary(toolchain, source);
    if (!isimportable(source))
        return 0;
    holdworkdir();
    beginimport();
    const int result = importsource(&import, symbolfile);
    endimport();
    return result;
}

bool istemporary(const char *path) {
    const size_t length = strlen(TEMPDIRECTORY);
    for (const char *p = strstr(path, TEMPDIRECTORY); p != nullptr;
         p = strstr(p + 1, TEMPDIRECTORY)) {
        if (p[length] == '/' && (p == path || p[-1] == '/'))
            return true;
    }
    return isdumplink(path);
}

bool isimportable(const char *source) {
    struct stat status = {};
    return access(source, R_OK) == 0 && stat(source, &status) == 0 && S_ISREG(status.st_mode) &&
           stricmp(filepart(source), TEMPFILE) != 0;
}
