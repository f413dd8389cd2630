#include "importers/dumpfile.h"

#include "importers/tempdir.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Nobody else sets the sticky bit of a file, and it stays when a program writes the file anew.
constexpr mode_t ownMode = S_ISVTX | S_IRUSR | S_IWUSR;

// The date that tells that no program has written the file yet.
constexpr timespec untouched[2] = {{0, 0}, {0, 0}};

int claimed = -1; // the file, locked

// -1, with errno EEXIST, when something has the name.
int make() {
    return open(TEMPFILE, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownMode);
}

// Whether nobody else holds the file, which still has the name. Where a file system has no locks
// the run goes on without.
bool hold(int file) {
    struct stat own = {};
    struct stat named = {};
    if (flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    return fstat(file, &own) == 0 && lstat(TEMPFILE, &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino;
}

// Removes what a killed run left; false when that is not what has the name. The file is not used
// again, for a program of that run may still be writing into it.
bool removeleftover() {
    struct stat status = {};
    if (lstat(TEMPFILE, &status) != 0 || !S_ISREG(status.st_mode) ||
        (status.st_mode & S_ISVTX) == 0 || status.st_nlink != 1 || status.st_uid != geteuid())
        return false;
    const int file = open(TEMPFILE, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool removed = hold(file) && unlink(TEMPFILE) == 0;
    close(file);
    return removed;
}

} // namespace

// Between the making and the locking another run may take the file for a leftover, and has it
// then.
bool claimdump() {
    int file = make();
    if (file < 0 && errno == EEXIST && removeleftover())
        file = make();
    if (file < 0)
        return false;
    if (!hold(file) || futimens(file, untouched) != 0) {
        close(file);
        return false;
    }
    claimed = file;
    return true;
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
