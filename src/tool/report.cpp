#include "tool/report.h"

#include "tool/closure.h"
#include "tool/options.h"
#include "tool/output.h"

#include <csignal>
#include <cstring>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
struct sigaction endingBefore[std::size(endingSignals)];
const char *unfinished = nullptr; // the file that is being written

void removeunfinished(int signal) {
    unlink(unfinished);
    raise(signal); // comes when this returns, and ends the process
}

// A file that is not whole is removed when a signal ends the process, for it would look like
// one that is.
void guard(FILE *out, const char *reportfile) {
    struct stat status = {};
    struct sigaction remove = {};
    unfinished = nullptr;
    if (out == stdout || fstat(fileno(out), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    unfinished = reportfile;
    remove.sa_handler = removeunfinished;
    remove.sa_flags = static_cast<int>(SA_RESETHAND);
    for (size_t i = 0; i < std::size(endingSignals); ++i) {
        sigaction(endingSignals[i], nullptr, &endingBefore[i]);
        if (endingBefore[i].sa_handler != SIG_IGN)
            sigaction(endingSignals[i], &remove, nullptr);
    }
}

void unguard() {
    if (unfinished == nullptr)
        return;
    for (size_t i = 0; i < std::size(endingSignals); ++i)
        sigaction(endingSignals[i], &endingBefore[i], nullptr);
    unfinished = nullptr;
}

bool isnamed(const char *reportfile) {
    return reportfile != nullptr && reportfile[0] != 0 && strcmp(reportfile, "/dev/stdout") != 0;
}

// Ends the report and tells whether all of it was written. A file that is not whole is
// removed here too.
bool endreport(FILE *out, const char *reportfile, bool whole) {
    const bool removable = unfinished != nullptr;
    bool written = fflush(out) == 0 && ferror(out) == 0;
    if (out != stdout)
        written = fclose(out) == 0 && written;
    if (written && whole)
        return true;
    const char *reason = written ? "out of memory writing" : "could not write";
    if (out == stdout) {
        toolsay("tolvik: ERROR: %s the report to standard output\n", reason);
        clearerr(stdout); // it is told
    } else {
        toolsay("tolvik: ERROR: %s the report '%s'\n", reason, reportfile);
    }
    if (removable)
        unlink(reportfile);
    return false;
}

int writereport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, char **files, int nfiles,
                int define, int refer, int links, int limit) {
    return nsymbols > 0 ? tvksymbolreport(out, info, symbols, nsymbols, define, refer, links, limit)
                        : tvkfilereport(out, info, files, nfiles, define, refer, links, limit);
}

} // namespace

int tvkreport(const char *reportfile, TVKINFO *info, char **symbols, int nsymbols, char **files,
              int nfiles, int define, int refer, int links, int limit) {
    if (info == nullptr)
        return 0;
    FILE *out = isnamed(reportfile) ? fopen(reportfile, "we") : stdout;
    if (out == nullptr)
        return 0;
    // A reader that goes away shows as a write error, not as the end of this process.
    struct sigaction ignore = {};
    struct sigaction before = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &before);
    guard(out, reportfile);
    const int result =
        writereport(out, info, symbols, nsymbols, files, nfiles, define, refer, links, limit);
    const bool whole = endreport(out, reportfile, result != 0);
    unguard();
    sigaction(SIGPIPE, &before, nullptr);
    return whole ? result : 0;
}

void printheader(FILE *out, const char *title) {
    if (OPTverbose <= 1)
        return;
    OUTPUT output = beginoutput(out);
    puttexts(&output, "\n", preheader, title, postheader);
    flushoutput(&output);
}
