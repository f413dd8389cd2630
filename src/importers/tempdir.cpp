#include "importers/tempdir.h"

#include "symbols/options.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

bool lockworkdir(bool wait) {
    static bool held = false;
    static const int directory = open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (held)
        return true;
    held = flock(directory, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (held || !wait)
        return held;
    toolsay("tolvik: waiting for another run in this directory\n");
    while (flock(directory, LOCK_EX) != 0 && errno == EINTR)
        continue;
    held = true;
    return true;
}

void cleanup() {
    const int directory = open(TEMPDIRECTORY, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR *listing = directory >= 0 ? fdopendir(directory) : nullptr;
    if (listing == nullptr)
        return;
    while (const dirent *entry = readdir(listing)) {
        if (unlinkat(directory, entry->d_name, 0) != 0)
            unlinkat(directory, entry->d_name, AT_REMOVEDIR);
    }
    closedir(listing);
    rmdir(TEMPDIRECTORY);
}
