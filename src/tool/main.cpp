// tolvik: where symbols are defined, where they are referred to, and which object files
// they bring into a link.
//
// The command line comes in batches. Each batch names a symbol file, which the importer of
// the chosen object type fills from the batch's sources; after the last batch the symbol
// file is loaded and reported on.
#include "brax/parse.h"
#include "brax/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/tempdir.h"
#include "search/argv.h"
#include "tool/analysis.h"
#include "tool/callbacks.h"
#include "tool/options.h"
#include "tool/usage.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int SYMBOLFILESIZE = 256;
constexpr char symbolextension[] = ".tvk";

// From the first '.', wherever it stands, to the end; empty without one.
const char *extensionof(const char *name) {
    const char *dot = strchr(name, '.');
    return dot != nullptr ? dot : "";
}

bool issymbolfile(const char *name) {
    return stricmp(extensionof(name), symbolextension) == 0;
}

// What is opened later must not land on a standard stream that the caller closed; writing
// to one then still fails.
void holdstandardstreams() {
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", O_RDONLY);
    }
}

// What was lost on the way to standard output was most likely all that the run was for: the
// help, the history.
void checkstandardoutput() {
    if (fflush(stdout) != 0 || ferror(stdout) != 0)
        toolsay("tolvik: ERROR: could not write to standard output\n");
}

// An importer creates the symbol file anew by appending to it. False when the old one stays.
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

// Names the symbol file of the batch and tells whether it is reported on. False when the
// name is too long or the old file cannot be removed; the batch's sources are then skipped,
// and it is not reported on.
bool choosesymbolfile(char *symbolfile, int *report) {
    char chosen[SYMBOLFILESIZE];
    const char *source = BRAXsargv[0];
    const char *destination = BRAXdargv[0];
    const bool loaded = issymbolfile(source);
    const bool builtonly = !loaded && issymbolfile(destination);
    const char *name = builtonly ? destination : source;
    size_t length = strlen(name);
    const char *added = "";
    if (!loaded && !builtonly) {
        length -= strlen(extensionof(name));
        added = symbolextension;
    }
    if (length + strlen(added) >= SYMBOLFILESIZE) {
        toolsay("tolvik: ERROR: symbol file name too long for '%.40s...'\n", name);
        return false;
    }
    copytext(chosen, name, length, SYMBOLFILESIZE);
    copytext(chosen + length, added, SYMBOLFILESIZE - length);
    if (!loaded)
        holdworkdir();
    if (!loaded && !removeoldfile(chosen))
        return false;
    copytext(symbolfile, chosen, SYMBOLFILESIZE);
    *report = builtonly ? 0 : 1;
    return true;
}

IMPORTER importerof(int type) {
    switch (type) {
    case OBJTYPE_SGI:
    case OBJTYPE_N64:
        return sgitvk;
    case OBJTYPE_PSX:
        return psxtvk;
    case OBJTYPE_PS2:
        return ps2tvk;
    case OBJTYPE_GC:
        return gctvk;
    default:
        return pctvk;
    }
}

// Whether both names lead to one file, however they are spelt.
bool samefile(const char *a, const char *b) {
    struct stat first = {};
    struct stat second = {};
    return *b != 0 && stat(a, &first) == 0 && stat(b, &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// No report goes into a source or a symbol file.
void judgedestination(const char *source, char *destination) {
    if (stricmp(source, destination) == 0 || issymbolfile(destination) ||
        samefile(source, destination))
        destination[0] = 0;
}

void importsource(const char *source, const char *symbolfile) {
    if (strchr(source, '.') == nullptr) {
        toolsay("tolvik: ERROR: no file extension for '%s'\n", source);
        return;
    }
    if (issymbolfile(source) || istemporary(source))
        return;
    if (importerof(OPTobjtype)(source, symbolfile) == 0)
        toolsay("tolvik: ERROR reading symbols from '%s'\n", source);
}

// Fills in what the command line left open.
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

// Where the report goes; never over symbols, which the file may not be known to hold when its
// path has more dots.
const char *reportname() {
    const char *name = BRAXargnum > 0 ? BRAXdargv[0] : "";
    const char *extension = strrchr(name, '.');
    if (extension == nullptr || stricmp(extension, symbolextension) != 0 || access(name, F_OK) != 0)
        return name;
    toolsay("tolvik: ERROR: no report into the symbol file '%s'\n", name);
    return "";
}

} // namespace

int main(int argc, char *argv[]) {
    char symbolfile[SYMBOLFILESIZE] = "";
    int report = 0;
    bool more = true;
    holdstandardstreams();
    // A file that grows past the limit then shows as a write error, which is told.
    signal(SIGXFSZ, SIG_IGN);
    atexit(checkstandardoutput);
    cleanup(); // what a killed run left is no source of this one
    BRAX_init(BRAX_reset, BRAX_usage, BRAX_opt, BRAX_history);
    while (more) {
        more = BRAX_parse(argc, argv, "tolvik", TextVersion);
        completeoptions();
        const bool imports = BRAXargnum > 0 && choosesymbolfile(symbolfile, &report);
        for (int i = 0; i < BRAXargnum; ++i) {
            judgedestination(BRAXsargv[i], BRAXdargv[i]);
            if (imports)
                importsource(BRAXsargv[i], symbolfile);
        }
        cleanup();
    }
    if (report != 0)
        tolvik(symbolfile, reportname());
    cleanup();
    return 0;
}
