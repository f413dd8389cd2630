// The symbol store: one symbol file in memory.
//
// What holds at all times:
// - A name is stored once, however many files define or refer to it. symadd never inserts a
//   name that symfind already finds uncut.
// - The 256 buckets and their chains decide the order in which "all" symbols are reported:
//   a chain's newest symbol is its head. They never grow; a private index beside them finds
//   a name in one step whatever the chain's length.
// - Lists are built at the front, so they hold their items in reverse order of insertion.
//
// finew, symnew, slnew and flnew return plain memory of galloc; the loader's records come from the
// store's arena. A run keeps its store until it ends.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

constexpr int SYMBUCKETS = 256;

// A line of a symbol file has at most 255 characters, line feed included. A symbol's name is
// written whole when it fits the longest define line, and else cut to the same length in every
// line. When the names of an object and its library do not fit their line together, each is cut
// to its own limit.
constexpr size_t SYMBOLLINE = 255;
constexpr size_t SYMBOLLIMIT = SYMBOLLINE - (sizeof "define=,FUNCTION,GLOBAL,-2147483648\n" - 1);
constexpr size_t OBJECTLIMIT = (SYMBOLLINE - (sizeof "[][]\n" - 1)) / 2;
constexpr size_t LIBRARYLIMIT = OBJECTLIMIT;

enum SYMTYPE : int32_t { TYPE_UNKNOWN = 0, TYPE_FUNCTION = 1, TYPE_DATA = 2 };
enum SYMSCOPE : int32_t { SCOPE_UNKNOWN = 0, SCOPE_GLOBAL = 1, SCOPE_LOCAL = 2 };

struct ARENA;
struct _tagfile;

struct _tagsymbol {
    char *name; // owned, underscores stripped unless OPTunderscores is set
    SYMTYPE type;
    SYMSCOPE scope;
    int32_t size;     // bytes; 0 when unknown
    _tagfile *file;   // the last file that defines it; null while only referred to
    _tagsymbol *next; // in the same bucket

    int32_t length;   // private to a table of cinew: of the name
    int32_t nrefers;  // private to a report: nodes of refers lists that show this symbol
    int32_t firstref; // private to a report: where its references begin
};

// A node of a file's definitions or references, and the form of a bucket, whose symbol is
// the head of its chain and whose next is always null.
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

    int64_t stamp;  // private to the closure: of the list that holds this file
    int32_t number; // private to a graph: its place there
};

// One file of a closure (see closure.h), in the order in which the files were reached.
struct _tagfilelist {
    _tagfile *file;
    int level;          // steps from the start at which it was first reached
    _tagsymbol *symbol; // through which it was reached; defined in this file
    _tagfilelist *next;

    _tagfilelist *last; // private: of a list's first entry, its last one
    int64_t stamp;      // private: of a list's first entry, the mark of its files
};

struct TVKINFO {
    _tagsymlist *symtable; // SYMBUCKETS buckets
    _tagfile *files;       // newest first; null when there are none
};

// A new empty store; null when memory runs out.
TVKINFO *cinew();

// Releases a store of cinew or tvkload with all that was loaded; null is ignored. Records of finew,
// symnew and slnew stay with the caller. Closures of the store's files become invalid.
void tvkfree(TVKINFO *info);

// A new file record with copies of both texts, the rest empty; the caller sets `next`. Null
// when memory runs out.
_tagfile *finew(const char *name, const char *library);

// A new symbol record without a file; null when memory runs out.
_tagsymbol *symnew(const char *name, SYMTYPE type, SYMSCOPE scope, int32_t size);

// A new list node with both fields null; null when memory runs out.
_tagsymlist *slnew();

// A new closure entry with all fields 0 or null; null when memory runs out.
_tagfilelist *flnew();

// Enters a symbol of symnew into a table of cinew. When its name is found already, the
// stored symbol takes the given type, scope and size where its own is 0, the given
// record is released and the stored one returned; else the given one is inserted. The
// caller goes on with the result. Null when memory runs out; the symbol is then released.
_tagsymbol *symadd(_tagsymlist *table, _tagsymbol *symbol);

// The symbol of that name, or with one underscore before it, or with one after it; else the
// symbol whose name is this one cut as writers of symbol files cut it. Null when there is none.
_tagsymbol *symfind(const _tagsymlist *table, const char *name);

// The n-th symbol (from 1) of exactly that name in its bucket; null when there are fewer.
_tagsymbol *symfindnth(const _tagsymlist *table, const char *name, int n);

// The bucket of a name, 0 to 255; only its last four characters decide.
int symhash(const char *name);

const char *symname(const _tagsymbol *symbol);
const char *symfile(const _tagsymbol *symbol); // "unknown" without a symbol or a file
const char *symtype(const _tagsymbol *symbol); // "()" for a function, "" otherwise
const char *symscope(const _tagsymbol *symbol);
int symsize(const _tagsymbol *symbol);

// The eight bytes at `text`, the first one lowest, on every machine.
inline uint64_t eightbytes(const char *text) {
    uint64_t word = 0;
    memcpy(&word, text, 8);
    return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

// One line of a symbol file for symenterall: a name as in the file, `length`
// characters with at least 8 readable bytes after them, and the values of the line.
struct SYMENTRY {
    const char *name;
    int32_t length;
    int32_t size;
    SYMTYPE type;
    SYMSCOPE scope;
    _tagsymbol *symbol; // the result
    uint64_t hash;      // private
};

// These three take a table of cinew only.

// Strips and hashes the entry's name and begins to fetch its place in the index.
void symprepare(const _tagsymlist *table, SYMENTRY *entry);

// Where the table's store keeps records that are made by the thousands; released with it.
ARENA *symarena(_tagsymlist *table);

// What symnew and symadd do, for `count` prepared entries, in order: the waits for memory
// overlap, and the records come from the table's arena. Each entry gets its symbol; false when
// memory runs out.
bool symenterall(_tagsymlist *table, SYMENTRY *entries, int count);
