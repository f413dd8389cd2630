#include "report/report.h"

#include "report/output.h"
#include "symbols/options.h"

#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Closes the report. When it is not whole, prints a message; when memory ran out, removes the file.
void endreport(FILE *out, const char *reportfile, bool whole) {
    struct stat status = {};
    const bool removable =
        out != stdout && fstat(fileno(out), &status) == 0 && S_ISREG(status.st_mode);
    bool written = fflush(out) == 0 && ferror(out) == 0;
    if (out != stdout)
        written = fclose(out) == 0 && written;
    if (written && whole)
        return;
    const char *reason = whole ? "could not write" : "out of memory writing";
    if (out == stdout) {
        toolsay("tolvik: ERROR: %s the report to standard output\n", reason);
        clearerr(stdout); // already reported
    } else {
        toolsay("tolvik: ERROR: %s the report '%s'\n", reason, reportfile);
    }
    if (!whole && removable)
        unlink(reportfile);
}

} // namespace

int tvkreport(const char *reportfile, TVKINFO *info, char **symbols, int nsymbols, char **files,
              int nfiles, int define, int refer, int links, int limit) {
    if (info == nullptr)
        return 0;
    const bool named =
        reportfile != nullptr && reportfile[0] != 0 && strcmp(reportfile, "/dev/stdout") != 0;
    FILE *out = named ? fopen(reportfile, "we") : stdout;
    if (out == nullptr)
        return 0;
    // A second buffer would split the blocks of the report.
    fflush(out);
    setvbuf(out, nullptr, _IONBF, 0);
    const int result =
        nsymbols > 0 ? tvksymbolreport(out, info, symbols, nsymbols, define, refer, links, limit)
                     : tvkfilereport(out, info, files, nfiles, define, refer, links, limit);
    endreport(out, reportfile, result != 0);
    return result;
}

void printheader(FILE *out, const char *title) {
    OUTPUT output = beginoutput(out);
    putheading(&output, title);
    flushoutput(&output);
}
