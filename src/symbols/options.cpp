#include "symbols/options.h"

#include <cstdarg>
#include <cstdio>

int OPTobjtype = OBJTYPE_PC;
char *OPTsymbols[MAXSYMBOLS];
int OPTnsymbols = 0;
char *OPTfiles[MAXFILES];
int OPTnfiles = 0;
int OPTdefine = 0;
int OPTrefer = 0;
int OPTlinks = 0;
int OPTrecurselevel = -1;
int OPTunderscores = 0;
int OPTappend = 0;
int OPThtml = 0;
int OPTlibnamefrompath = 0;
const char *preheader = "";
const char *postheader = "";
char OPTsourcelinkprefix[BRAXFIELDSIZE];
char OPTlibrary[BRAXFIELDSIZE];

void toolsay(const char *format, ...) {
    fflush(stdout);
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
}
