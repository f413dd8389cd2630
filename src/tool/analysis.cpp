#include "tool/analysis.h"

#include "report/report.h"
#include "symbols/loader.h"
#include "symbols/options.h"

int tolvik(const char *symbolfile, const char *reportfile) {
    // Leak checkers see a store that a variable leads to as reachable; "volatile" keeps it.
    static TVKINFO *volatile store = nullptr;
    store = tvkload(symbolfile);
    return tvkreport(reportfile, store, OPTsymbols, OPTnsymbols, OPTfiles, OPTnfiles, OPTdefine,
                     OPTrefer, OPTlinks, OPTrecurselevel);
}
