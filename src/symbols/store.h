// The symbol store: one symbol file in memory.
//
// In: a symbol file's path. Out: its object files and symbols as linked records. Read this header
// first, then loader.cpp, whose readline() reads a line of a symbol file. options.h has the tool's
// options, words.h the fields of a line.
//
// Invariants:
// - A name is stored once, however many files define or refer to it. symadd never inserts a
//   name that symfind finds uncut.
// - The 256 buckets never grow. A chain's newest symbol is its head; reports of "all" symbols
//   follow this order. A private index finds a name in one step.
// - Lists grow at the front: they hold their items in reverse order of insertion.
//
// finew, symnew, slnew and flnew return blocks of galloc; the loader's records are in the
// store's arena. A run keeps its store until it ends.
#pragma once

#include <cstdint>
#include <cstring>

constexpr int SYMBUCKETS = 256;

// A line of a symbol file has at most 255 characters, line feed included. Writers cut a symbol's
// name to SYMBOLLIMIT in every line. They cut an object's and a library's name to their limits
// when both together do not fit the header line.
constexpr size_t SYMBOLLINE = 255;
constexpr size_t SYMBOLLIMIT = SYMBOLLINE - (sizeof "define=,FUNCTION,GLOBAL,-2147483648\n" - 1);
constexpr size_t OBJECTLIMIT = (SYMBOLLINE - (sizeof "[][]\n" - 1)) / 2;
constexpr size_t LIBRARYLIMIT = OBJECTLIMIT;

enum SYMTYPE : uint8_t { TYPE_UNKNOWN = 0, TYPE_FUNCTION = 1, TYPE_DATA = 2 };
enum SYMSCOPE : uint8_t { SCOPE_UNKNOWN = 0, SCOPE_GLOBAL = 1, SCOPE_LOCAL = 2 };

struct _tagfile;

struct _tagsymbol {
    char *name;       // owned, underscores stripped unless OPTunderscores is set
    _tagsymbol *next; // in the same bucket
    _tagfile *file;   // the last file that defines it; null while only referred to
    int32_t nrefers;  // private to a report: number of refers nodes with this symbol
    int32_t firstref; // private: first reference (report), own number (page), file's number (graph)

    // The loader reads these at each reference.
    int32_t size; // bytes; 0 when unknown
    SYMTYPE type;
    SYMSCOPE scope;
    uint8_t length; // private: of the name at `text`; 0 when the name is elsewhere
    char text[3];   // private to the loader: the name starts here
};

// A node of a file's definitions or references. In a bucket, `symbol` is the head of the chain and
// `next` is null.
struct _tagsymlist {
    _tagsymbol *symbol;
    _tagsymlist *next;
};

struct _tagfile {
    char *name;    // as in its header line, owned
    char *library; // owned; empty when there is none
    char *source;  // path it was compiled from, owned; null when unknown
    int32_t date;  // of the source: year * 10000 + month * 100 + day, month from 0; 0 unknown
    int32_t size;  // bytes of code and data; 0 unknown
    _tagsymlist *defines;
    _tagsymlist *refers;
    _tagfile *next; // in the store's list

    int64_t stamp;  // private to the closure: the stamp of the list that holds this file
    int32_t number; // private to a graph: its index there; to a page: -1 when it is left out
};

// One file of a closure (report/closure.h), in the order in which files are reached.
struct _tagfilelist {
    _tagfile *file;
    int level;          // steps from the start to the file
    _tagsymbol *symbol; // first symbol of the file that is referred to
    _tagfilelist *next;

    int64_t stamp; // private, in the first entry: the stamp of the listed files
};

struct TVKINFO {
    _tagsymlist *symtable; // SYMBUCKETS buckets
    _tagfile *files;       // newest first; null when there are none
};

// Returns a new empty store; null when memory runs out.
TVKINFO *cinew();

// Frees a store of cinew or tvkload with its loaded records; ignores null. Records of finew,
// symnew and slnew stay with the caller. Closures of the store's files become invalid.
void tvkfree(TVKINFO *info);

// Returns a new file record with copies of both strings, all else 0 or null; null when memory
// runs out. The caller sets `next`.
_tagfile *finew(const char *name, const char *library);

// Returns a new symbol record without a file; null when memory runs out.
_tagsymbol *symnew(const char *name, SYMTYPE type, SYMSCOPE scope, int32_t size);

// Return a new list node or closure entry with all fields 0 or null; null when memory runs out.
_tagsymlist *slnew();
_tagfilelist *flnew();

// Inserts a symbol of symnew into a table and returns it. When symfind finds its name uncut, the
// stored symbol takes the type, scope and size where its own is 0; the given record is freed and
// the stored one returned. When memory runs out, frees the symbol and returns null.
_tagsymbol *symadd(_tagsymlist *table, _tagsymbol *symbol);

// Returns the symbol with that name, or with one underscore before it, or with one after it; else
// the symbol with this name as writers of symbol files cut it; else null.
_tagsymbol *symfind(const _tagsymlist *table, const char *name);

// Returns the n-th symbol (from 1) of exactly that name in its bucket; null when there are fewer.
_tagsymbol *symfindnth(const _tagsymlist *table, const char *name, int n);

// Returns all symbols of the table, bucket after bucket in the order of the chains, and sets
// *count. The array is a block of galloc. Returns null when memory runs out.
_tagsymbol **symall(const _tagsymlist *table, int64_t *count);

// Returns the bucket of a name, 0 to 255. It depends on the last four characters.
int symhash(const char *name);

const char *symname(const _tagsymbol *symbol);
const char *symfile(const _tagsymbol *symbol); // "unknown" without a symbol or a file
const char *symtype(const _tagsymbol *symbol); // "()" for a function, "" for others
const char *symscope(const _tagsymbol *symbol);
int symsize(const _tagsymbol *symbol);
