#include "importers/dumpfile.h"

#include "importers/process.h"
#include "importers/tempdir.h"
#include "tool/options.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The date that tells that no program has written the file yet.
constexpr timespec untouched[2] = {{0, 0}, {0, 0}};

int claimed = -1; // the file, locked

// False when another run holds the file and is not to be waited for, or the wait is interrupted.
// Where a file system has no locks the run goes on without.
bool lock(int file, bool wait) {
    if (flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return true;
    if (!wait)
        return false;
    toolsay("tolvik: waiting for another run in this directory\n");
    return flock(file, LOCK_EX) == 0;
}

bool hasname(int file) {
    struct stat own = {};
    struct stat named = {};
    return fstat(file, &own) == 0 && lstat(TEMPFILE, &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino;
}

// Removes what has the name and no run holds. It is not used again, for a program of a killed
// run may still be writing into it.
bool makeway(bool wait) {
    struct stat status = {};
    if (lstat(TEMPFILE, &status) != 0)
        return errno == ENOENT;
    if (!S_ISREG(status.st_mode))
        return unlink(TEMPFILE) == 0;
    const int file = open(TEMPFILE, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return errno == ENOENT;
    const bool free = lock(file, wait) && (!hasname(file) || unlink(TEMPFILE) == 0);
    close(file);
    return free;
}

bool claim(int file) {
    if (futimens(file, untouched) != 0) {
        unlink(TEMPFILE);
        close(file);
        return false;
    }
    claimed = file;
    return true;
}

} // namespace

// Between the making and the locking another run may take the file for a leftover, and has it
// then.
bool claimdump(bool wait) {
    while (!interrupted()) {
        const int file = open(TEMPFILE, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file >= 0 && lock(file, false) && hasname(file))
            return claim(file);
        if (file >= 0)
            close(file);
        if (file >= 0 ? !wait : errno != EEXIST || !makeway(wait))
            return false;
    }
    return false;
}

void letgodump(bool stay) {
    if (claimed < 0)
        return;
    if (!stay)
        unlink(TEMPFILE);
    close(claimed);
    claimed = -1;
}

bool removedump() {
    return unlink(TEMPFILE) == 0 || errno == ENOENT;
}

FILE *opendump() {
    struct stat status = {};
    FILE *file = fopen(TEMPFILE, "re");
    if (file == nullptr)
        return nullptr;
    if (fstat(fileno(file), &status) == 0 &&
        (status.st_size != 0 || status.st_mtim.tv_sec != 0 || status.st_mtim.tv_nsec != 0))
        return file;
    fclose(file);
    return nullptr;
}
