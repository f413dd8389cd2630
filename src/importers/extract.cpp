// An extractor that runs inside the temporary directory looks for a relative library there, by the
// name in its command. A link with that name leads to the library while the extractor runs.
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

// Lets the relative name `shown` lead to the library from the current, temporary, directory. A
// library that may have a member of that name is copied, because an extractor would write the
// member through the link.
void showlibrary(const char *shown, const char *library) {
    char from[BRAXFIELDSIZE + 8] = "../";
    char target[4 * BRAXFIELDSIZE] = "";
    char directory[BRAXFIELDSIZE + 8];
    for (const char *p = strchr(shown, '/'); p != nullptr; p = strchr(p + 1, '/')) {
        copytext(directory, shown, static_cast<size_t>(p - shown), sizeof directory);
        if (mkdir(directory, 0744) == 0)
            appendtext(target, "../", sizeof target);
    }
    appendtext(from, library, sizeof from);
    appendtext(target, from, sizeof target);
    struct stat status = {};
    const bool regular = stat(from, &status) == 0 && S_ISREG(status.st_mode);
    const bool unsafe = regular && holdsword(from, filepart(shown));
    const bool linked = !unsafe && symlink(target, shown) == 0;
    if (regular && !linked)
        copyfile(shown, from);
}

// Removes the name and the directories that lead to it.
void hidelibrary(char *shown) {
    unlink(shown);
    while (char *end = strrchr(shown, '/')) {
        *end = 0;
        rmdir(shown);
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
    char shown[BRAXFIELDSIZE + 8] = "";
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
        copytext(shown, extract[strlen(extract) - 1] == '\\' ? ".." : "", sizeof shown);
        appendtext(shown, library, sizeof shown);
        showlibrary(shown, library);
    }
    runextractor(command, library);
    hidelibrary(shown);
    SGIreturn(home);
    return true;
}
