#include "base/options.h"

#include "mem/galloc.h"

#include <cstdarg>
#include <cstdio>

int OPTverbose = 2;
int OPTwrite = 1;
int OPTbanner = 1;
int OPTlog = 1;
int OPTtime = 0;
int OPTminargs = 1;
int OPTkeepopts = 0;
int OPTusehardspaces = 1;
int OPTsorttype = 0;
int OPTsortbydirs = 0;
int OPTstartsortat = 0;
int OPTskiprules = 0;
int OPTstrippaths = 0;
int OPTrecurse = 0;
int OPTstartrecurseat = 0;
int OPTallfiles = 1;
int OPTreadonly = 1;
int OPThidden = 1;
int OPTsystem = 1;
int OPTdirectory = 0;
int OPTmakedatelist = 0;
int OPTmakesizelist = 0;
int OPTmakeattriblist = 0;
int OPTexpandwildcards = 1;
int OPTuseshortnames = 0;
int OPTuselongnames = 0;
int OPTkeepunfound = 1;
char OPTextrulebuf[BRAXFIELDSIZE];
char OPTnamerulebuf[BRAXFIELDSIZE];
char OPTpathrulebuf[BRAXFIELDSIZE];
const char *OPTextrule = OPTextrulebuf;
const char *OPTnamerule = OPTnamerulebuf;
const char *OPTpathrule = OPTpathrulebuf;
char *OPTenvpath = nullptr;
char *OPTurl = nullptr;
char *OPTbookmark = nullptr;

int OPToptlower = 1;
int OPTnamecombine = 1;
int OPTautoquote = 1;
int OPTlibnohardspace = 0;
float OPTversion = 1.0F;
char OPTstr[BRAXFIELDSIZE];
const char *const *OPThistory = nullptr;

int initialized = 0;
BRAXRESETFUNC BRAX_initfunc = nullptr;
BRAXUSAGEFUNC BRAX_usagefunc = nullptr;
BRAXOPTFUNC BRAX_optfunc = nullptr;
int opterror = 0;
int autohelp = 0;
int BRAXhelpgiven = 0;
char prgnamebuf[BRAXFIELDSIZE];

namespace {

bool refused = false;

void clearrules() {
    OPTextrulebuf[0] = 0;
    OPTnamerulebuf[0] = 0;
    OPTpathrulebuf[0] = 0;
    OPTextrule = OPTextrulebuf;
    OPTnamerule = OPTnamerulebuf;
    OPTpathrule = OPTpathrulebuf;
}

// The options of every batch that start as 0, and as 1.
int *const cleared[] = {&OPTtime,           &OPTkeepopts,      &OPTsorttype,     &OPTsortbydirs,
                        &OPTstartsortat,    &OPTskiprules,     &OPTstrippaths,   &OPTrecurse,
                        &OPTstartrecurseat, &OPTdirectory,     &OPTmakedatelist, &OPTmakesizelist,
                        &OPTmakeattriblist, &OPTuseshortnames, &OPTuselongnames};
int *const set[] = {&OPTwrite,         &OPTbanner,          &OPTlog,        &OPTminargs,
                    &OPTusehardspaces, &OPTallfiles,        &OPTreadonly,   &OPThidden,
                    &OPTsystem,        &OPTexpandwildcards, &OPTkeepunfound};

void resethelptexts() {
    if (OPTurl == nullptr)
        OPTurl = gallocarray<char>(BRAXFIELDSIZE);
    if (OPTurl != nullptr)
        OPTurl[0] = 0;
    if (OPTbookmark == nullptr) {
        OPTbookmark = gallocarray<char>(BRAXBOOKMARKSIZE);
        if (OPTbookmark != nullptr)
            OPTbookmark[0] = 0;
    }
}

} // namespace

void BRAX_ini() {
    OPTverbose = 2;
    for (int *option : cleared)
        *option = 0;
    for (int *option : set)
        *option = 1;
    grelease(OPTenvpath);
    clearrules();
    resethelptexts();
    opterror = 0;
    if (BRAX_initfunc != nullptr)
        BRAX_initfunc();
}

void BRAX_freehelptexts() {
    grelease(OPTurl);
    grelease(OPTbookmark);
}

void *BRAX_alloc(BRAXBUF *buffer, int32_t size) {
    buffer->size = size;
    buffer->p = galloc(size);
    return buffer->p;
}

void BRAX_free(BRAXBUF *buffer) {
    grelease(buffer->p);
}

void BRAX_say(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

void BRAX_refuse(const char *what, const char *text) {
    if (OPTverbose != 0 && !refused)
        BRAX_say("brax - %s TOO LONG <%.40s...>\n", what, text);
    refused = true;
    BRAXhelpgiven = 1;
}

void BRAX_newrefusals() {
    refused = false;
}
