#include "importers/lowered.h"

#include "brax/text.h"
#include "importers/dumpfile.h"
#include "importers/tempdir.h"

#include <cstdio>
#include <cstring>
#include <string_view>
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

// Our links name their targets as nobody else does, so that one that a killed run left is known
// and goes with this run.
constexpr std::string_view linkStart = ".//./";

// Whether the name is a link with that very text.
bool islinkto(const char *name, const char *target) {
    char text[BRAXFIELDSIZE + 8];
    const ssize_t length = readlink(name, text, sizeof text);
    return length > 0 && std::string_view(text, static_cast<size_t>(length)) == target;
}

// Lets the lowered name lead to the object beside it; false when another file has that name.
bool linkbeside(LOWERED *lowered, const char *object) {
    char target[BRAXFIELDSIZE + 8] = "";
    const bool leads = setlowered(lowered, object);
    copytext(target, linkStart.data(), sizeof target);
    if (!appendtext(target, object, sizeof target))
        return leads;
    if (leads && !islinkto(lowered->name, target))
        return true;
    lowered->way = LOWERLINKED;
    return leads || symlink(target, lowered->name) == 0;
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

bool isdumplink(const char *path) {
    char text[8];
    const ssize_t length = readlink(path, text, sizeof text);
    return length > 0 && std::string_view(text, static_cast<size_t>(length)).starts_with(linkStart);
}

void lowermember(LOWERED *lowered, const char *object) {
    if (setlowered(lowered, object))
        return;
    if (exists(lowered->name))
        lowered->way = exchange(lowered, object) ? LOWEREXCHANGED : LOWERNONE;
    else
        lowered->way = rename(object, lowered->name) == 0 ? LOWERRENAMED : LOWERNONE;
}

// Only who has the listing's name in a directory makes and removes links there.
bool lowerobject(LOWERED *lowered, const char *object, const char *directory,
                 const SGI_place *home) {
    const bool claimed = claimdump(false);
    if (claimed && linkbeside(lowered, object))
        return true;
    setlowered(lowered, object);
    lowered->way = linkprivately(lowered, object, directory, home) ? LOWERPRIVATE : LOWERNONE;
    return claimed || lowered->way == LOWERPRIVATE;
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
    letgodump(false);
    return object;
}
