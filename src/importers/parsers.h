// How each toolchain's listing is read. Each function adds the lines of one object, whose
// header is written, to the records and its sizes to the object's total; the file of a listing
// is at its beginning.
#pragma once

#include "importers/listing.h"
#include "importers/symbolfile.h"

void gcparse(LISTING *listing, const char *object, RECORDS *records);
void pcparse(LISTING *listing, const char *object, RECORDS *records);
void psxparse(LISTING *listing, const char *object, RECORDS *records);
void ps2parse(LISTING *listing, const char *object, RECORDS *records);

// An SGI listing brings its objects' headers along: whole records.
void sgiparse(LISTING *listing, RECORDS *records);

// The first place in a block of `length` bytes where the needle stands whole; null when there
// is none or the length is 0.
const char *TVKmemstr(const void *block, const char *needle, int length);

// Reads one line of an ee-objdump symbol table: 1 when it tells of a symbol, else 0 with
// nothing of use in the outputs. `name` holds NAMELIMIT + 1 bytes (a longer name is cut),
// `type` and `scope` 32 each; the type is "FUNCTION", "DATA", or "unknown" for a symbol that
// the object only refers to, whose size is 0.
int ps2_parse_line(const char *line, char *name, char *type, char *scope, int *size);

// Collects the printable-text column of a section, named without its dot, from an ee-objdump
// dump, read from its beginning, in a text of at most `size` - 1 characters. Returns the
// buffer, or null when the dump has no such section or `size` is below 1.
char *ps2fgetsection(char *buffer, int size, FILE *file, const char *section);

// Finds a source file's name in such a text: from "cmn/", or else "ps2/", to its second dot.
// Copies at most `size` - 1 characters and returns the name, or null, with an empty name, when
// there is none.
char *ps2fgetsourcename(char *name, int size, const char *text);
