#include "importers/tempdir.h"

#include "tool/options.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

enum LOCK { LOCKNONE, LOCKSHARED, LOCKALONE };

LOCK held = LOCKNONE;
int lockDescriptor = -1; // the working directory

constexpr int listFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Whether the lock is held now; false only when another run has it. A directory that cannot
// be locked at all counts as locked.
bool trylock(LOCK kind) {
    if (held >= kind)
        return true;
    if (lockDescriptor < 0)
        lockDescriptor = open(".", listFlags);
    const int operation = kind == LOCKALONE ? LOCK_EX : LOCK_SH;
    if (lockDescriptor >= 0 && flock(lockDescriptor, operation | LOCK_NB) != 0 &&
        errno == EWOULDBLOCK)
        return false;
    held = kind;
    return true;
}

void waitlock(LOCK kind) {
    if (trylock(kind))
        return;
    if (OPTverbose > 0)
        toolsay("tolvik: waiting for another run in this directory\n");
    while (flock(lockDescriptor, kind == LOCKALONE ? LOCK_EX : LOCK_SH) != 0 && errno == EINTR)
        continue;
    held = kind;
}

void fallback(LOCK kind) {
    if (held <= kind)
        return;
    if (lockDescriptor >= 0)
        flock(lockDescriptor, kind == LOCKNONE ? LOCK_UN : LOCK_SH);
    held = kind;
}

DIR *listdirectory(int parent, const char *name) {
    const int descriptor = openat(parent, name, listFlags);
    if (descriptor < 0)
        return nullptr;
    DIR *listing = fdopendir(descriptor);
    if (listing == nullptr)
        close(descriptor);
    return listing;
}

// The next name but "." and ".."; null at the end.
const char *nextname(DIR *listing) {
    const dirent *entry = readdir(listing);
    while (entry != nullptr &&
           (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0))
        entry = readdir(listing);
    return entry != nullptr ? entry->d_name : nullptr;
}

// Removes a file, a link or an empty directory.
bool removeentry(int parent, const char *name) {
    return unlinkat(parent, name, 0) == 0 || unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

// Lets a directory of ours be listed and emptied, whatever the extractor made of it.
void openup(int parent, const char *name) {
    struct stat status = {};
    if (fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode))
        fchmodat(parent, name, S_IRWXU, 0);
}

// Gives a directory that stands in the way a new name in `top`.
bool liftdirectory(int parent, const char *name, int top, unsigned *serial) {
    char lifted[32];
    openup(parent, name);
    for (int attempts = 0; attempts < 100; ++attempts) {
        snprintf(lifted, sizeof lifted, "%s.%u", TEMPDIRECTORY, (*serial)++);
        if (renameat(parent, name, top, lifted) == 0)
            return true;
    }
    return false;
}

// Empties and removes the directory `name` of `top`; the directories in it move up into
// `top`. Returns the number of entries removed or moved.
int64_t dissolve(int top, const char *name, unsigned *serial) {
    int64_t changes = 0;
    openup(top, name);
    DIR *listing = listdirectory(top, name);
    if (listing == nullptr)
        return 0;
    while (const char *entry = nextname(listing))
        changes +=
            removeentry(dirfd(listing), entry) || liftdirectory(dirfd(listing), entry, top, serial);
    closedir(listing);
    return changes + removeentry(top, name);
}

// One pass over the directory; the number of entries removed or moved.
int64_t emptypass(int top, unsigned *serial) {
    DIR *listing = listdirectory(top, ".");
    if (listing == nullptr)
        return 0;
    int64_t changes = 0;
    while (const char *entry = nextname(listing))
        changes += removeentry(top, entry) ? 1 : dissolve(top, entry, serial);
    closedir(listing);
    return changes;
}

} // namespace

void holdworkdir() {
    if (held == LOCKALONE)
        return;
    waitlock(LOCKALONE);
    static const int registered = atexit(cleanup);
    static_cast<void>(registered); // a later batch may end the process with a usage page
}

void awaitimports() {
    waitlock(LOCKSHARED);
}

void letgoworkdir() {
    fallback(LOCKNONE);
}

// A tree of any depth goes without recursion: directories are moved up to the top as they
// are met, each once, and pass by pass the top gets empty.
void cleanup() {
    struct stat status = {};
    const LOCK before = held;
    if (lstat(TEMPDIRECTORY, &status) != 0 || !S_ISDIR(status.st_mode) || !trylock(LOCKALONE))
        return;
    const int top = open(TEMPDIRECTORY, listFlags);
    if (top >= 0) {
        unsigned serial = 0;
        while (emptypass(top, &serial) > 0)
            continue;
        close(top);
        rmdir(TEMPDIRECTORY);
    }
    fallback(before);
}
