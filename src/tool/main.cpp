// tolvik reports where symbols are defined, where they are referred to, and which object files
// they bring into a link.
//
// In: a command line of batches. Out: a symbol file for each batch with objects or libraries, and a
// report on the last one.
// Read main() at the end of this file first. BRAX_parse (brax/parse.h) makes a batch; callbacks.cpp
// has the tool's options, for example `-html`; the importer of the object type
// (importers/importers.h) fills the symbol file from the batch's sources. After the last batch,
// tolvik (analysis.cpp) loads the symbol file (symbols/loader.h) and writes the report
// (report/report.h).
#include "base/text.h"
#include "brax/parse.h"
#include "importers/command.h"
#include "importers/importers.h"
#include "importers/tempdir.h"
#include "report/report.h"
#include "search/argv.h"
#include "symbols/options.h"
#include "tool/analysis.h"
#include "tool/callbacks.h"
#include "tool/usage.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int SYMBOLFILESIZE = 256;
constexpr char symbolextension[] = ".tvk";

// Returns the name from its first '.' on, directories included; empty without one.
const char *extensionof(const char *name) {
    const char *dot = strchr(name, '.');
    return dot != nullptr ? dot : "";
}

bool issymbolfile(const char *name) {
    return stricmp(extensionof(name), symbolextension) == 0;
}

// Reserves descriptors 0 to 2 when the caller closed them, so that no file of the user gets their
// number. Writing to them still fails.
void reservedescriptors() {
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", O_RDONLY);
    }
}

// Removes the old symbol file, because importers append. False when it cannot be removed.
bool removeoldfile(const char *symbolfile) {
    if (OPTappend != 0 || access(symbolfile, F_OK) != 0)
        return true;
    if (OPTverbose > 1)
        toolsay("tolvik: WARNING: removing existing file '%s'\n", symbolfile);
    if (unlink(symbolfile) == 0 || errno == ENOENT)
        return true;
    toolsay("tolvik: ERROR: could not remove '%s'\n", symbolfile);
    return false;
}

// Sets the name of the batch's symbol file, and whether to report on it. False when the name is too
// long or the old file cannot be removed; the caller skips the batch's sources.
bool choosesymbolfile(char *symbolfile, int *report) {
    const char *source = BRAXsargv[0];
    const char *destination = BRAXdargv[0];
    const bool loaded = issymbolfile(source);
    const bool builtonly = !loaded && issymbolfile(destination);
    const char *name = builtonly ? destination : source;
    size_t length = strlen(name);
    const char *added = "";
    *report = 0;
    if (!loaded && !builtonly) {
        length -= strlen(extensionof(name));
        added = symbolextension;
    }
    if (length + strlen(added) >= SYMBOLFILESIZE) {
        toolsay("tolvik: ERROR: symbol file name too long for '%.40s...'\n", name);
        return false;
    }
    copytext(symbolfile, name, length, SYMBOLFILESIZE);
    appendtext(symbolfile, added, SYMBOLFILESIZE);
    if (!loaded)
        lockworkdir(true);
    if (!loaded && !removeoldfile(symbolfile))
        return false;
    *report = builtonly ? 0 : 1;
    return true;
}

void importsource(const char *source, const char *symbolfile) {
    if (strchr(source, '.') == nullptr) {
        toolsay("tolvik: ERROR: no file extension for '%s'\n", source);
        return;
    }
    if (issymbolfile(source))
        return;
    // By OBJTYPE.
    constexpr IMPORTER importers[] = {nullptr, sgitvk, sgitvk, pctvk, psxtvk, ps2tvk, gctvk};
    lockworkdir(true);
    if (importers[OPTobjtype](source, symbolfile) == 0 && importsignal() == 0)
        toolsay("tolvik: ERROR reading symbols from '%s'\n", source);
}

// Ends the process by the signal that ended a command. Truncates the symbol file to `length`, its
// size before the batch; removes it for -1.
void endbysignal(const char *symbolfile, int64_t length) {
    unlink(TEMPFILE);
    cleanup();
    if (length < 0)
        unlink(symbolfile);
    else if (truncate(symbolfile, length) != 0)
        toolsay("tolvik: ERROR: could not write '%s'\n", symbolfile);
    signal(importsignal(), SIG_DFL);
    raise(importsignal());
}

void importbatch(const char *symbolfile) {
    struct stat status = {};
    const int64_t length = stat(symbolfile, &status) == 0 ? status.st_size : -1;
    for (int i = 0; i < BRAXargnum; ++i) {
        importsource(BRAXsargv[i], symbolfile);
        if (importsignal() != 0)
            endbysignal(symbolfile, length);
    }
}

// Sets the options that the command line did not give.
void completeoptions() {
    if (OPTrecurselevel < 0)
        OPTrecurselevel = INT_MAX;
    if (OPTdefine == 0 && OPTrefer == 0 && OPTlinks == 0) {
        OPTdefine = 1;
        OPTrefer = 1;
        OPTlinks = 1;
    }
    preheader = OPThtml != 0 ? "</PRE><H4>" : "";
    postheader = OPThtml != 0 ? "</H4><PRE>" : "\n";
}

bool samefile(const struct stat *file, const char *name) {
    struct stat status = {};
    return stat(name, &status) == 0 && status.st_dev == file->st_dev &&
           status.st_ino == file->st_ino;
}

// Whether the existing file must not be overwritten: the last batch or the report reads it, or its
// last extension is ".tvk".
bool isprotected(const struct stat *file, const char *name, const char *symbolfile) {
    const char *extension = strrchr(name, '.');
    bool found = samefile(file, symbolfile) ||
                 (extension != nullptr && stricmp(extension, symbolextension) == 0);
    for (int i = 0; i < BRAXargnum && !found; ++i)
        found = samefile(file, BRAXsargv[i]);
    return found;
}

// Returns the name of the report file; empty for standard output.
const char *reportname(const char *symbolfile) {
    struct stat status = {};
    const char *name = BRAXargnum > 0 ? BRAXdargv[0] : "";
    if (*name == 0 || stricmp(BRAXsargv[0], name) == 0 || issymbolfile(name))
        return "";
    if (stat(name, &status) != 0 || !isprotected(&status, name, symbolfile))
        return name;
    toolsay("tolvik: ERROR: no report over '%s', which holds objects or symbols\n", name);
    return "";
}

} // namespace

int main(int argc, char *argv[]) {
    char symbolfile[SYMBOLFILESIZE] = "";
    int report = 0;
    bool more = true;
    bool worked = false; // not for help and history
    reservedescriptors();
    // Failed writes return an error instead and are reported.
    signal(SIGXFSZ, SIG_IGN);
    signal(SIGPIPE, SIG_IGN);
    BRAX_init(BRAX_reset, BRAX_usage, BRAX_opt, BRAX_history);
    while (more) {
        more = BRAX_parse(argc, argv, "tolvik", TextVersion);
        completeoptions();
        worked |= BRAXargnum > 0;
        if (BRAXargnum > 0 && choosesymbolfile(symbolfile, &report))
            importbatch(symbolfile);
    }
    if (report != 0)
        tolvik(symbolfile, reportname(symbolfile));
    if (worked && lockworkdir(false)) // false while another process imports here
        cleanup();
    return 0;
}
