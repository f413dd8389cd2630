#include "base/runshell.h"

#include "base/growtext.h"
#include "base/text.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/auxv.h>
#include <unistd.h>

namespace {

constexpr char standins[] = "/../lib/tolvik";

// Writes the absolute path of the stand-ins, PATH_MAX bytes. False when the path is not known, is
// too long, or holds a ':', which would divide it into two directories of PATH.
bool findstandins(char *directory) {
    const ssize_t length = readlink("/proc/self/exe", directory, PATH_MAX - 1);
    if (length >= 0)
        directory[length] = 0;
    else if (!copytext(directory, reinterpret_cast<const char *>(getauxval(AT_EXECFN)), PATH_MAX))
        return false;
    char *name = strrchr(directory, '/');
    if (*directory != '/' || strchr(directory, ':') != nullptr)
        return false;
    return copytext(name, standins, static_cast<size_t>(directory + PATH_MAX - name)) &&
           access(directory, X_OK) == 0;
}

void appendstandins() {
    const char *path = getenv("PATH");
    char directory[PATH_MAX];
    GROWTEXT longer = {};
    if (path == nullptr || !findstandins(directory))
        return;
    if (growappend(&longer, path) && growappend(&longer, ":") && growappend(&longer, directory))
        setenv("PATH", longer.text, 1);
    growfree(&longer);
}

} // namespace

int runshell(const char *command) {
    static bool appended = false;
    if (!appended)
        appendstandins();
    appended = true;
    fflush(stdout);
    return system(command);
}
