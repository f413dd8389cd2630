#include "brax/parse.h"

#include "base/text.h"
#include "brax/builtin.h"
#include "brax/help.h"
#include "brax/run.h"
#include "mem/galloc.h"
#include "search/argv.h"
#include "search/find.h"
#include "search/rules.h"
#include "search/sort.h"

BRAXBUF optnamebuf = {nullptr, 0};
char *namelist = nullptr;
char *optlist = nullptr;
const char *optptr = nullptr;
char firstcall = 1;
char helpaddress[BRAXFIELDSIZE];
char optsvariable[BRAXFIELDSIZE];

namespace {

// Starts a run: allocates the working block and builds the option text in it. False when memory
// runs out.
bool startrun(int argc, char *argv[], const char *name) {
    opterror = 0;
    autohelp = 1;
    BRAXhelpgiven = 0;
    BRAXargnum = 0;
    BRAX_free(&optnamebuf);
    if (BRAX_alloc(&optnamebuf, 2 * BRAXLISTSIZE) == nullptr) {
        if (OPTverbose != 0)
            BRAX_say("brax - ERROR ALLOCATING NAME BUFFER\n");
        return false;
    }
    namelist = static_cast<char *>(optnamebuf.p);
    optlist = namelist + BRAXLISTSIZE;
    namelist[0] = 0;
    optlist[0] = 0;
    BRAX_gather(argc, argv, name);
    optptr = opterror == 0 ? optlist : nullptr;
    return true;
}

// Finds the files of the batch.
void findfiles() {
    BRAXargnum = 0;
    SearchList *list = BRAX_readnames();
    if (list == nullptr) {
        BRAXhelpgiven = 1; // out of memory: end the run
        return;
    }
    ApplyNameRules(list);
    BRAX_findbatch(list);
    ApplyExtRule(list);
    MakeArgvs(list);
    DestroySearchList(list);
}

void usage(int level) {
    BRAX_usagefunc(prgnamebuf, optsvariable, helpaddress, level);
}

// Shows the banner if there are files, usage if there are too few, and requested help.
void showhelp(int options) {
    const int count = BRAXargnum - (OPTkeepopts != 0 ? options : 0);
    if (autohelp <= 1) {
        autohelp = BRAXargnum < OPTminargs ? 1 : 0;
        if (OPTbanner != 0 && firstcall == 1 && count > 0 && OPTverbose > 1 &&
            BRAX_usagefunc != nullptr)
            usage(0);
    }
    if (autohelp == 0)
        return;
    if ((autohelp != 3 || !BRAX_webhelp(BRAXprogram)) && OPTverbose != 0 &&
        BRAX_usagefunc != nullptr)
        usage(OPTverbose);
    BRAXhelpgiven = 1;
}

bool endcall() {
    firstcall = 0;
    bool more = opterror != 0 || (optptr != nullptr && *optptr != 0);
    if (BRAXhelpgiven != 0) {
        more = false;
        BRAX_restore();
    }
    if (OPTrecurse == 2)
        grelease(OPTenvpath);
    return more;
}

} // namespace

void BRAX_init(BRAXRESETFUNC reset, BRAXUSAGEFUNC usage, BRAXOPTFUNC option,
               const char *const *history) {
    BRAX_initfunc = reset;
    BRAX_usagefunc = usage;
    BRAX_optfunc = option;
    OPThistory = history;
    initialized = 1;
    BRAX_ini();
}

bool BRAX_parse(int argc, char *argv[], const char *name, const char *version) {
    if (initialized == 0 && OPTverbose != 0) {
        BRAX_say("brax - BRAX NOT INITIALIZED.  CALL BRAX_init(... )\n");
        return false;
    }
    BRAX_ini();
    BRAX_newrefusals();
    BRAXprogram = name != nullptr ? name : "";
    BRAXversiontext = version != nullptr ? version : "";
    if (optnamebuf.p != nullptr && (optptr != nullptr || firstcall == 0)) {
        freeFiles();
        namelist[0] = 0;
    } else if (!startrun(argc, argv, BRAXprogram)) {
        return false;
    }
    if (opterror == 0) {
        const int options = BRAX_scan();
        findfiles();
        BRAX_sortbatch();
        if (BRAXhelpgiven == 0)
            showhelp(options);
    }
    return endcall();
}

void BRAX_restore() {
    BRAX_freehelptexts();
    BRAX_free(&optnamebuf);
    optptr = nullptr;
    namelist = nullptr;
    optlist = nullptr;
    firstcall = 1;
    freeFiles();
}
