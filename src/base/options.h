// base: option values, strings, fields and numbers for every folder but mem.
//
// Read this file first: the option values and the state of the run. They are process-wide,
// set while the command line is scanned and read afterwards. BRAX_ini resets the first group
// at the start of every batch. text.h handles strings and file names, growtext.h strings of
// any length, fields.h and numbers.h the option text, shellword.h shell commands.
#pragma once

#include <cstdint>

// Size of a buffer for one field, name or path, terminator included.
constexpr int BRAXFIELDSIZE = 2048;

// Replaces blanks inside a command-line argument, so that the argument is one field.
constexpr char BRAXHARDSPACE = 28;

// Size of the option text and of the name list, terminator included.
constexpr int BRAXLISTSIZE = 4194304;

// A block and its size.
struct BRAXBUF {
    void *p;      // owned; may be null
    int32_t size; // in bytes; a loaded file's length
};

using BRAXRESETFUNC = void (*)();
using BRAXUSAGEFUNC = int (*)(const char *program, const char *topic, const char *address,
                              int level);
using BRAXOPTFUNC = const char *(*)(const char *text);

// Values reset for every batch, with their defaults.
extern int OPTverbose;         // 2: 0 silent, 1 names and errors, 2 status, 3 more; above 5 traces
extern int OPTwrite;           // 1: 0 makes BRAX_savefile write nothing
extern int OPTbanner;          // 1: show the banner on the first call
extern int OPTlog;             // 1: log level, accepted only
extern int OPTtime;            // 0: timing diagnostics, accepted only
extern int OPTminargs;         // 1: with fewer files the usage is shown
extern int OPTkeepopts;        // 0: options are also kept in the name list
extern int OPTusehardspaces;   // 1: blanks inside arguments become hard spaces
extern int OPTsorttype;        // 0: sort key 0 to 7, 0 for none
extern int OPTsortbydirs;      // 0: group by directory first
extern int OPTstartsortat;     // 0: first index that is sorted
extern int OPTskiprules;       // 0: number of names that skip the name rule
extern int OPTstrippaths;      // 0: strip paths of destination names
extern int OPTrecurse;         // 0: 0 current directory, 1 whole tree, 2 the list OPTenvpath
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
extern const char *OPTextrule; // destination rules; an empty string when unset
extern const char *OPTnamerule;
extern const char *OPTpathrule;
extern char OPTextrulebuf[BRAXFIELDSIZE];
extern char OPTnamerulebuf[BRAXFIELDSIZE];
extern char OPTpathrulebuf[BRAXFIELDSIZE];
extern char *OPTenvpath; // the path list of "-r", owned; may be null

// Allocated by the first BRAX_ini; null before and when memory ran out.
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
extern const char *const *OPThistory; // version history, ended by an empty string

// Run state.
extern int initialized; // 1 after BRAX_init
extern BRAXRESETFUNC BRAX_initfunc;
extern BRAXUSAGEFUNC BRAX_usagefunc;
extern BRAXOPTFUNC BRAX_optfunc;
extern int opterror;      // -1 after an unknown option
extern int autohelp;      // help to show: 0 none, 1 usage if too few files, 2 usage, 3 web help
extern int BRAXhelpgiven; // 1 after help, history or an error was printed; ends the run
extern char prgnamebuf[BRAXFIELDSIZE]; // program name: last component, no extension, lower case

// Resets the first group, allocates OPTurl and OPTbookmark unless they exist, and calls the
// program's reset callback.
void BRAX_ini();

// Frees OPTurl and OPTbookmark.
void BRAX_freehelptexts();

// Sets the buffer to a new block of `size` bytes and returns it; null when memory runs out.
void *BRAX_alloc(BRAXBUF *buffer, int32_t size);

// Frees the block unless it is null, and sets the pointer to null.
void BRAX_free(BRAXBUF *buffer);

// Prints a message of the framework on standard output.
[[gnu::format(printf, 1, 2)]] void BRAX_say(const char *format, ...);

// Refuses an input beyond a limit: prints "brax - <what> TOO LONG <start of the text...>",
// once per call of BRAX_parse and only when OPTverbose is non-zero. Sets BRAXhelpgiven,
// which ends the run after the call. `what` is upper case, such as "FIELD".
void BRAX_refuse(const char *what, const char *text);

// Re-enables BRAX_refuse's message at the start of BRAX_parse.
void BRAX_newrefusals();
