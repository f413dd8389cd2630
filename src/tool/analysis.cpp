#include "tool/analysis.h"

#include "report/report.h"
#include "symbols/loader.h"
#include "symbols/options.h"

int tolvik(const char *symbolfile, const char *reportfile) {
    // Static, so that leak checkers see the store as reachable; volatile, so that it is stored.
    static TVKINFO *volatile store = nullptr;
    store = tvkload(symbolfile);
    return tvkreport(reportfile, store, OPTsymbols, OPTnsymbols, OPTfiles, OPTnfiles, OPTdefine,
                     OPTrefer, OPTlinks, OPTrecurselevel);
}
