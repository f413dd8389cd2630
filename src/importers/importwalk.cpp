// The import of a source in order, from tvkwalk at the end of this file: importlibrary extracts the
// members, importsingle takes the object itself, walkobjects lists the objects, importobject dumps
// one and writes its record.
#include "importers/importwalk.h"

#include "base/growtext.h"
#include "base/text.h"
#include "importers/command.h"
#include "importers/extract.h"
#include "importers/paths.h"
#include "importers/tempdir.h"
#include "search/directory.h"
#include "symbols/options.h"
#include "wild/wild.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct IMPORT {
    const TOOLCHAIN *toolchain;
    const char *source;
    bool library;
    SGI_place home; // working directory at the start
    FILE *records;
};

bool islibrary(const TOOLCHAIN *toolchain, const char *source) {
    const char *extension = strchr(source, '.');
    return extension != nullptr && stricmp(extension, toolchain->libraryExtension) == 0;
}

// Gives the object its lower-case name: renames an extracted member, or makes a symbolic link
// beside the user's object. False when that fails or another file has or will have the name.
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

// Appends the record of an object in the current directory. False when no listing can be opened,
// which ends the import.
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

// Appends the name and its terminating zero byte.
bool addname(GROWTEXT *names, const char *name) {
    return growappend(names, name, static_cast<int64_t>(strlen(name)) + 1);
}

// Lists the names in the current directory that match the pattern, in directory order. All are
// listed before the first dump, because dumps create and rename files. False when memory runs out.
bool listobjects(GROWTEXT *names, const char *pattern) {
    char output[sizeof SGI_finddata::name];
    bool added = growreserve(names, sizeof output); // here, so that a lack of memory fails any list
    if (strpbrk(pattern, "*?#") == nullptr)         // the source was found to be readable
        return added && (*pattern == 0 || addname(names, pattern));
    const SGI_handle handle = added ? SGIfindopen() : 0;
    if (handle == 0)
        return added;
    SGI_finddata data = {};
    while (added && SGIfindquick(handle, &data) != 0)
        added = WILD_match(output, data.name, pattern, pattern) == 0 || addname(names, data.name);
    SGIfindclose(handle);
    return added;
}

// Imports the objects in the directory that match the pattern. Returns 0 when memory runs out.
int walkobjects(const IMPORT *import, const char *directory, const char *pattern) {
    GROWTEXT names = {};
    bool listed = true;
    if (chdir(directory) == 0) {
        listed = listobjects(&names, pattern);
        const char *end = names.text + names.length;
        const char *object = names.text;
        while (listed && object < end && importobject(import, object))
            object += strlen(object) + 1;
        growfree(&names);
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
