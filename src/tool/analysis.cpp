#include "tool/analysis.h"

#include "tool/loader.h"
#include "tool/options.h"
#include "tool/report.h"

int tolvik(const char *symbolfile, const char *reportfile) {
    // Leak checkers see a store that a variable leads to as reachable; "volatile" keeps it.
    static TVKINFO *volatile store = nullptr;
    store = tvkload(symbolfile);
    return tvkreport(reportfile, store, OPTsymbols, OPTnsymbols, OPTfiles, OPTnfiles, OPTdefine,
                     OPTrefer, OPTlinks, OPTrecurselevel);
}
