// An extractor that runs inside the temporary directory looks for a relative library there,
// by the name that its command line gives. So the library is shown under that very name while
// it runs: as a link, or as a copy when the library may have a member of its own name, which
// an extractor would write through a link. When it wrote that member over the copy, which it may
// not have read to its end, it runs once more on the library itself.
#include "importers/extract.h"

#include "brax/text.h"
#include "importers/command.h"
#include "importers/process.h"
#include "importers/tempdir.h"
#include "tool/options.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Whether the word is anywhere in the file's bytes; also true when that cannot be found out.
bool mayhold(const char *path, std::string_view word) {
    char buffer[65536];
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    bool found = false;
    size_t kept = 0; // bytes of the piece before, in which the word may begin
    ssize_t got = 0;
    while (!found && !word.empty() && (got = read(file, buffer + kept, sizeof buffer - kept)) > 0) {
        const std::string_view piece(buffer, kept + static_cast<size_t>(got));
        found = piece.find(word) != std::string_view::npos;
        kept = piece.size() < word.size() ? piece.size() : word.size() - 1;
        memmove(buffer, buffer + piece.size() - kept, kept);
    }
    if (file >= 0)
        close(file);
    return found || word.empty() || got < 0;
}

// The date of a copy, which it has as long as nobody writes it.
constexpr timespec copyDates[2] = {{0, 0}, {0, 0}};

bool copyfile(const char *to, const char *from) {
    char buffer[65536];
    const int input = open(from, O_RDONLY | O_CLOEXEC);
    const int output = open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    bool whole = input >= 0 && output >= 0;
    ssize_t got = 0;
    while (whole && (got = read(input, buffer, sizeof buffer)) > 0)
        whole = write(output, buffer, static_cast<size_t>(got)) == got;
    if (input >= 0)
        close(input);
    whole = whole && futimens(output, copyDates) == 0;
    return (output < 0 || close(output) == 0) && whole && got == 0;
}

// Makes the directories that lead to the shown name. False when the way back up, put in front
// of the library's name, does not fit `target`.
bool makeway(const char *shown, const char *library, char *target, size_t size) {
    char directory[BRAXFIELDSIZE + 2];
    copytext(target, "../", size);
    for (const char *p = strchr(shown, '/'); p != nullptr; p = strchr(p + 1, '/')) {
        copytext(directory, shown, static_cast<size_t>(p - shown), sizeof directory);
        if (mkdir(directory, 0744) == 0 && !appendtext(target, "../", size))
            return false;
    }
    return appendtext(target, library, size);
}

// Whether the shown name is neither the link nor the copy any more.
bool iswrittenover(const char *shown) {
    struct stat status = {};
    return lstat(shown, &status) != 0 || (S_ISREG(status.st_mode) && status.st_mtime != 0);
}

// Shows the library under that relative name in the current, the temporary, directory.
bool showlibrary(const char *shown, const char *library) {
    char target[4 * BRAXFIELDSIZE];
    char from[BRAXFIELDSIZE + 8] = "../";
    if (!makeway(shown, library, target, sizeof target) || !appendtext(from, library, sizeof from))
        return false;
    const char *ownName = strrchr(shown, '/');
    if (!mayhold(from, ownName != nullptr ? ownName + 1 : shown) && symlink(target, shown) == 0)
        return true;
    return copyfile(shown, from);
}

// Removes the shown name and the directories that lead to it.
void hidelibrary(char *shown) {
    unlink(shown);
    while (char *end = strrchr(shown, '/')) {
        *end = 0;
        rmdir(shown);
    }
}

bool runextractor(const char *command) {
    if (OPTverbose > 3)
        printf("system(%s)\n", command);
    return runcommand(command);
}

bool extractagain(const TOOLCHAIN *toolchain, const char *library) {
    char command[COMMANDSIZE];
    char way[BRAXFIELDSIZE + 8] = "../";
    return !interrupted() && appendtext(way, library, sizeof way) &&
           makecommand(command, toolchain->extract, way, "") && runcommand(command);
}

// What was extracted before a failure is imported all the same.
void judgeextractor(bool succeeded, const char *library) {
    if (!succeeded && !interrupted())
        toolsay("tolvik: ERROR: extracting files from '%s' failed\n", library);
}

// Runs the extractor in the temporary directory, which is the current one. False when the
// library cannot be shown there.
bool extractinside(const TOOLCHAIN *toolchain, const char *command, const char *library,
                   bool prefixed) {
    char shown[BRAXFIELDSIZE + 2];
    if (*library == '/') {
        judgeextractor(runextractor(command), library);
        return true;
    }
    snprintf(shown, sizeof shown, "%s%s", prefixed ? ".." : "", library);
    const bool reached = showlibrary(shown, library);
    if (reached) {
        const bool succeeded = runextractor(command);
        judgeextractor(iswrittenover(shown) ? extractagain(toolchain, library) : succeeded,
                       library);
    }
    hidelibrary(shown);
    return reached;
}

} // namespace

bool extractlibrary(const TOOLCHAIN *toolchain, const char *library, const SGI_place *home) {
    char command[COMMANDSIZE];
    const int kind = BRAX_typeofname(library);
    const bool relative = kind == BRAXNAMEPLAIN || kind == BRAXNAMERELATIVE;
    const char *extract = relative ? toolchain->extractRelative : toolchain->extract;
    if (!makecommand(command, extract, library, "") || mkdir(TEMPDIRECTORY, 0744) != 0)
        return false;
    if (!toolchain->extractInside) {
        judgeextractor(runextractor(command), library);
        return true;
    }
    if (chdir(TEMPDIRECTORY) != 0)
        return !toolchain->mustEnter;
    const bool prefixed = extract[strlen(extract) - 1] == '\\';
    const bool extracted = extractinside(toolchain, command, library, prefixed);
    SGIreturn(home);
    return extracted;
}
