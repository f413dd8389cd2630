// The symbol store: one symbol file in memory.
//
// What holds at all times:
// - A name is stored once, however many files define or refer to it. symadd never inserts a
//   name that symfind already finds.
// - The 256 buckets and their chains decide the order in which "all" symbols are reported:
//   a chain's newest symbol is its head. They never grow; a private index beside them finds
//   a name in one step whatever the chain's length.
// - Lists are built at the front, so they hold their items in reverse order of insertion.
//
// Records are plain memory of galloc. The store is filled once and lives until the process
// ends.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int SYMBUCKETS = 256;

enum SYMTYPE : int32_t { TYPE_UNKNOWN = 0, TYPE_FUNCTION = 1, TYPE_DATA = 2 };
enum SYMSCOPE : int32_t { SCOPE_UNKNOWN = 0, SCOPE_GLOBAL = 1, SCOPE_LOCAL = 2 };

struct _tagfile;

struct _tagsymbol {
    char *name; // owned, underscores stripped unless OPTunderscores is set
    SYMTYPE type;
    SYMSCOPE scope;
    int32_t size;     // bytes; 0 when unknown
    int32_t nrefers;  // private: nodes of refers lists that show this symbol
    _tagfile *file;   // the last file that defines it; null while only referred to
    _tagsymbol *next; // in the same bucket
    int64_t firstref; // private: its first place in the report's index of references
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

    int64_t stamp;     // private: the closure that lists this file
    int64_t total;     // private: sum of the sizes that its closure links in
    int64_t totalMark; // private: the computation that `total` comes from
};

struct TVKINFO {
    _tagsymlist *symtable; // SYMBUCKETS buckets
    _tagfile *files;       // newest first; null when there are none
};

// A new empty store; null when memory runs out.
TVKINFO *cinew();

// A new file record with copies of both texts, the rest empty; the caller sets `next`. Null
// when memory runs out.
_tagfile *finew(const char *name, const char *library);

// A new symbol record without a file; null when memory runs out.
_tagsymbol *symnew(const char *name, SYMTYPE type, SYMSCOPE scope, int32_t size);

// A new list node with both fields null; null when memory runs out.
_tagsymlist *slnew();

// Enters a symbol of symnew into a table of cinew. When its name is found already, the
// stored symbol takes what it did not know (type, scope, size that were 0), the given
// record is released and the stored one returned; else the given one is inserted. The
// caller goes on with the result. Null when memory runs out; the symbol is then released.
_tagsymbol *symadd(_tagsymlist *table, _tagsymbol *symbol);

// The symbol of that name, or with one underscore in front, or with one behind; null when
// there is none.
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

// For the loader: enters a name of `length` characters without making a record first. Its
// memory comes from storealloc. Null when memory runs out.
_tagsymbol *symenter(_tagsymlist *table, const char *name, size_t length, SYMTYPE type,
                     SYMSCOPE scope, int32_t size);

// Memory for records that live as long as the process, carved from larger blocks, aligned
// to 8 bytes; null when memory runs out.
void *storealloc(size_t size);
