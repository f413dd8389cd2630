// An extractor that runs inside the temporary directory opens a relative library there, by the
// name in its command. During its run a symbolic link with that name points to the library.
#include "importers/extract.h"

#include "base/text.h"
#include "importers/command.h"
#include "importers/tempdir.h"
#include "symbols/options.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Whether the file's bytes hold the word.
bool holdsword(const char *path, std::string_view word) {
    char buffer[65536];
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    bool found = false;
    size_t kept = 0; // bytes of the previous piece, in which the word may begin
    ssize_t got = 0;
    while (!found && !word.empty() && (got = read(file, buffer + kept, sizeof buffer - kept)) > 0) {
        const std::string_view piece(buffer, kept + static_cast<size_t>(got));
        found = piece.find(word) != std::string_view::npos;
        kept = piece.size() < word.size() ? piece.size() : word.size() - 1;
        memmove(buffer, buffer + piece.size() - kept, kept);
    }
    if (file >= 0)
        close(file);
    return found;
}

void copyfile(const char *to, const char *from) {
    char buffer[65536];
    const int input = open(from, O_RDONLY | O_CLOEXEC);
    const int output = open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    ssize_t got = 0;
    while ((got = read(input, buffer, sizeof buffer)) > 0 &&
           write(output, buffer, static_cast<size_t>(got)) == got)
        continue;
    if (input >= 0)
        close(input);
    if (output >= 0)
        close(output);
}

// Makes `link` in the current, temporary directory a symbolic link to the library. Copies a library
// that may have a member of that name: the extractor would write the member through the link.
void linklibrary(const char *link, const char *library) {
    char from[BRAXFIELDSIZE + 8] = "../";
    char target[4 * BRAXFIELDSIZE] = "";
    char directory[BRAXFIELDSIZE + 8];
    for (const char *p = strchr(link, '/'); p != nullptr; p = strchr(p + 1, '/')) {
        copytext(directory, link, static_cast<size_t>(p - link), sizeof directory);
        if (mkdir(directory, 0744) == 0)
            appendtext(target, "../", sizeof target);
    }
    appendtext(from, library, sizeof from);
    appendtext(target, from, sizeof target);
    struct stat status = {};
    const bool regular = stat(from, &status) == 0 && S_ISREG(status.st_mode);
    const bool unsafe = regular && holdsword(from, filepart(link));
    const bool linked = !unsafe && symlink(target, link) == 0;
    if (regular && !linked)
        copyfile(link, from);
}

// Removes the link and its directories.
void unlinklibrary(char *link) {
    unlink(link);
    while (char *end = strrchr(link, '/')) {
        *end = 0;
        rmdir(link);
    }
}

void runextractor(const char *command, const char *library) {
    if (OPTverbose > 3)
        printf("system(%s)\n", command);
    if (!runcommand(command) && OPTverbose > 2)
        toolsay("tolvik: ERROR: extracting files from '%s' failed\n", library);
}

} // namespace

bool extractlibrary(const TOOLCHAIN *toolchain, const char *library, const SGI_place *home) {
    char command[COMMANDSIZE];
    char link[BRAXFIELDSIZE + 8] = "";
    const int kind = BRAX_typeofname(library);
    const bool relative = kind == BRAXNAMEPLAIN || kind == BRAXNAMERELATIVE;
    const char *extract = relative ? toolchain->extractRelative : toolchain->extract;
    if (!makecommand(command, extract, library, "") || mkdir(TEMPDIRECTORY, 0744) != 0)
        return false;
    if (!toolchain->extractInside) {
        runextractor(command, library);
        return true;
    }
    if (chdir(TEMPDIRECTORY) != 0)
        return !toolchain->mustEnter;
    if (*library != '/') {
        // The shell drops the backslash after the dots.
        copytext(link, extract[strlen(extract) - 1] == '\\' ? ".." : "", sizeof link);
        appendtext(link, library, sizeof link);
        linklibrary(link, library);
    }
    runextractor(command, library);
    unlinklibrary(link);
    SGIreturn(home);
    return true;
}
