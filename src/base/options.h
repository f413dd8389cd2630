// The command-line framework's option values and run state, shared by every room above.
//
// They are process-wide: set while the command line is scanned, read afterwards. BRAX_ini
// puts the first group back to its defaults at the start of every batch.
#pragma once

#include <cstdint>

// Size of the buffers that hold one field, name or path, terminator included.
constexpr int BRAXFIELDSIZE = 2048;

// Stands for a blank inside one command-line argument while the option text is gathered,
// so that the field scanner does not split the argument there.
constexpr char BRAXHARDSPACE = 28;

// Room of the option text and of the name list, terminator included; together they are
// the framework's working block.
constexpr int BRAXLISTSIZE = 4194304;

// A block together with its size in bytes; for a loaded file the file's length. The block
// is owned; null when there is none.
struct BRAXBUF {
    void *p;
    int32_t size;
};

using BRAXRESETFUNC = void (*)();
using BRAXUSAGEFUNC = int (*)(const char *program, const char *topic, const char *address,
                              int level);
using BRAXOPTFUNC = const char *(*)(const char *text);

// Values that every batch starts from, with their defaults.
extern int OPTverbose;         // 2: 0 silent, 1 names and errors, 2 status, 3 more; above 5 traces
extern int OPTwrite;           // 1: 0 makes BRAX_savefile write nothing
extern int OPTbanner;          // 1: show the banner on the first call
extern int OPTlog;             // 1: log level, accepted only
extern int OPTtime;            // 0: timing diagnostics, accepted only
extern int OPTminargs;         // 1: fewer files than this ask for usage
extern int OPTkeepopts;        // 0: options are also kept in the name list
extern int OPTusehardspaces;   // 1: blanks inside arguments become hard spaces
extern int OPTsorttype;        // 0: sort key 0 to 7, 0 for none
extern int OPTsortbydirs;      // 0: group by directory first
extern int OPTstartsortat;     // 0: first index that is sorted
extern int OPTskiprules;       // 0: names that do not get the name rule
extern int OPTstrippaths;      // 0: strip paths of destination names
extern int OPTrecurse;         // 0: current directory, 1 whole tree, 2 the list OPTenvpath
extern int OPTstartrecurseat;  // 0: first list entry searched below the start directory
extern int OPTallfiles;        // 1: attribute filter
extern int OPTreadonly;        // 1
extern int OPThidden;          // 1
extern int OPTsystem;          // 1
extern int OPTdirectory;       // 0
extern int OPTmakedatelist;    // 0: build BRAXdateargv
extern int OPTmakesizelist;    // 0: build BRAXsizeargv
extern int OPTmakeattriblist;  // 0: build BRAXattribargv
extern int OPTexpandwildcards; // 1: expand wildcards
extern int OPTuseshortnames;   // 0
extern int OPTuselongnames;    // 0
extern int OPTkeepunfound;     // 1: keep patterns that match nothing
extern const char *OPTextrule; // destination rules; each points at an empty text when unset
extern const char *OPTnamerule;
extern const char *OPTpathrule;
extern char OPTextrulebuf[BRAXFIELDSIZE];
extern char OPTnamerulebuf[BRAXFIELDSIZE];
extern char OPTpathrulebuf[BRAXFIELDSIZE];
extern char *OPTenvpath; // the path list of "-r", owned; null when there is none

// Allocated on first use, released at the end of a run; null until then and after a
// failed allocation.
extern char *OPTurl;      // BRAXFIELDSIZE bytes: help address that replaces the default
extern char *OPTbookmark; // BRAXBOOKMARKSIZE bytes: anchor appended to the help address
constexpr int BRAXBOOKMARKSIZE = 128;

// Values kept for the whole process.
extern int OPToptlower;               // 1: lower-case the first letter of every option word
extern int OPTnamecombine;            // 1: a lone destination moves its source to the end
extern int OPTautoquote;              // 1: quote arguments that hold blanks
extern int OPTlibnohardspace;         // 0: 1 turns the conversion to hard spaces off
extern float OPTversion;              // 1.0: version required by the option "version"
extern char OPTstr[BRAXFIELDSIZE];    // that option's text
extern const char *const *OPThistory; // version history, ended by an empty text

// Run state.
extern int initialized; // 1 once BRAX_init has run
extern BRAXRESETFUNC BRAX_initfunc;
extern BRAXUSAGEFUNC BRAX_usagefunc;
extern BRAXOPTFUNC BRAX_optfunc;
extern int opterror;      // -1 once an unknown option was met
extern int autohelp;      // help due: 0 none, 1 usage if too few files, 2 usage, 3 web help
extern int BRAXhelpgiven; // 1 once help, history or an error was printed; ends the run
extern char prgnamebuf[BRAXFIELDSIZE]; // program name: last component, no extension, lower case

// Sets the values of the first group to their defaults, allocates OPTurl and OPTbookmark
// when they are missing, and runs the program's reset callback.
void BRAX_ini();

// Releases OPTurl and OPTbookmark.
void BRAX_freehelptexts();

// Allocates buffer->size = size bytes with galloc into buffer->p and returns the address;
// null when memory runs out.
void *BRAX_alloc(BRAXBUF *buffer, int32_t size);

// Releases the block, if there is one; the pointer becomes null.
void BRAX_free(BRAXBUF *buffer);

// The framework's channel: writes a message to standard output.
[[gnu::format(printf, 1, 2)]] void BRAX_say(const char *format, ...);

// Refuses an input beyond a limit: "brax - <what> TOO LONG <start of the text...>" when
// OPTverbose is non-zero, once per call of BRAX_parse; sets BRAXhelpgiven, so that the run
// ends after the call. `what` is upper case, such as "FIELD".
void BRAX_refuse(const char *what, const char *text);

// Lets BRAX_refuse speak again; BRAX_parse calls it at its start.
void BRAX_newrefusals();
