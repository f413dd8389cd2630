#include "importers/lowered.h"

#include "brax/text.h"
#include "importers/tempdir.h"

#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool exists(const char *name) {
    struct stat status = {};
    return lstat(name, &status) == 0;
}

// Whether both names lead to one file, as on a file system that ignores case.
bool samefile(const char *a, const char *b) {
    struct stat first = {};
    struct stat second = {};
    return stat(a, &first) == 0 && stat(b, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

// Lowers the name; true when the result leads to the object already.
bool setlowered(LOWERED *lowered, const char *object) {
    copytext(lowered->name, object, sizeof lowered->name);
    lowertext(lowered->name);
    lowered->way = LOWERSAME;
    return strcmp(lowered->name, object) == 0 || samefile(lowered->name, object);
}

// Lets two members change names, by way of a third name.
bool exchange(LOWERED *lowered, const char *object) {
    unsigned serial = 0;
    do
        snprintf(lowered->spare, sizeof lowered->spare, "tvk%u.tmp", serial++);
    while (exists(lowered->spare));
    if (rename(lowered->name, lowered->spare) != 0)
        return false;
    if (rename(object, lowered->name) == 0)
        return true;
    rename(lowered->spare, lowered->name);
    return false;
}

// Links the object from within the temporary directory of `home`, made anew, which becomes
// the current directory.
bool linkprivately(LOWERED *lowered, const char *object, const char *directory,
                   const SGI_place *home) {
    char target[2 * BRAXFIELDSIZE] = "";
    if (!SGIsaveplace(&lowered->directory))
        return false;
    copytext(target, *directory == '/' ? "" : "../", sizeof target);
    if (appendtext(target, directory, sizeof target) && appendtext(target, object, sizeof target) &&
        SGIreturn(home)) {
        cleanup();
        if (mkdir(TEMPDIRECTORY, 0744) == 0 && chdir(TEMPDIRECTORY) == 0 &&
            symlink(target, lowered->name) == 0)
            return true;
    }
    SGIreturn(&lowered->directory);
    SGIforgetplace(&lowered->directory);
    return false;
}

} // namespace

void lowermember(LOWERED *lowered, const char *object) {
    if (setlowered(lowered, object))
        return;
    if (exists(lowered->name))
        lowered->way = exchange(lowered, object) ? LOWEREXCHANGED : LOWERNONE;
    else
        lowered->way = rename(object, lowered->name) == 0 ? LOWERRENAMED : LOWERNONE;
}

void lowerobject(LOWERED *lowered, const char *object, const char *directory,
                 const SGI_place *home) {
    if (setlowered(lowered, object))
        return;
    if (symlink(object, lowered->name) == 0)
        lowered->way = LOWERLINKED;
    else
        lowered->way = linkprivately(lowered, object, directory, home) ? LOWERPRIVATE : LOWERNONE;
}

const char *dumpname(const LOWERED *lowered, const char *object) {
    return lowered->way == LOWERNONE ? object : lowered->name;
}

const char *unlower(LOWERED *lowered, const char *object) {
    if (lowered->way == LOWERRENAMED)
        return lowered->name;
    if (lowered->way == LOWERLINKED)
        unlink(lowered->name);
    if (lowered->way == LOWEREXCHANGED && rename(lowered->name, object) == 0)
        rename(lowered->spare, lowered->name);
    if (lowered->way == LOWERPRIVATE) {
        SGIreturn(&lowered->directory);
        SGIforgetplace(&lowered->directory);
    }
    return object;
}
