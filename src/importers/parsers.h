// The functions that read each toolchain's listing. Each reads a listing from its beginning, writes
// the lines of one object after its header line, and returns the object's size.
#pragma once

#include "importers/listing.h"
#include "importers/symbolfile.h"

int64_t gcparse(FILE *listing, FILE *records);
int64_t pcparse(FILE *listing, FILE *records);
int64_t psxparse(FILE *listing, FILE *records);
int64_t ps2parse(FILE *listing, FILE *records);

// Writes the source line of a PlayStation object in the current directory.
void psxsource(const char *object, FILE *records);

// Reads an SGI listing, which names its objects. Writes whole records.
void sgiparse(FILE *listing, FILE *records);

// Returns the first occurrence of the needle in a block of `length` bytes; null when there is none
// or the length is 0.
const char *TVKmemstr(const void *block, const char *needle, int length);

// Reads one line of an ee-objdump symbol table. Returns 1 for a symbol, else 0 with the outputs
// undefined. `name` holds 256 bytes, `type` and `scope` 32 each. The type is "FUNCTION", "DATA",
// or "unknown" for a symbol that the object only refers to, whose size is 0.
int ps2_parse_line(const char *line, char *name, char *type, char *scope, int *size);

// Copies the text column of a section, named without its dot, from an ee-objdump dump: at most
// `size` - 1 characters. Returns the buffer; null when the dump does not have the section or `size`
// is below 1.
char *ps2fgetsection(char *buffer, int size, FILE *file, const char *section);

// Copies the name of a source file in that text, from "cmn/", or else "ps2/", to its second dot: at
// most `size` - 1 characters. Returns the name; null, with an empty name, when there is none.
char *ps2fgetsourcename(char *name, int size, const char *text);
