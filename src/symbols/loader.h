// Reads a symbol file into a symbol store.
//
// A symbol file is text, one item a line: an object header line "[name]" or
// "[name][library]", and under it, in any order,
//
//     source=path,20020517                 the date's month counts from 0
//     define=name,FUNCTION,GLOBAL,124      or DATA, or LOCAL
//     refer=name
//     size=4096
//
// Other lines, and lines before the first header, are ignored. A line of more than 255 characters,
// line feed included, is read in pieces of that length, each a line of its own.
#pragma once

#include "symbols/store.h"

enum TVKRESULT { TVKADDED, TVKNOTOPENED, TVKNOTREAD, TVKNOMEMORY };

// Adds the contents of the file to a store of cinew whose buckets the caller has not changed,
// without a message. After TVKNOTREAD and TVKNOMEMORY the store has a part of them.
TVKRESULT tvkadd(TVKINFO *info, const char *path);

// Returns a new store with the contents of the file, for tvkfree. Returns null without a message
// when the file cannot be opened, and with one when a read fails or memory runs out.
TVKINFO *tvkload(const char *path);
