// The objects of one directory that an importer reads.
#pragma once

#include <cstddef>

// Names in the order of the directory's listing, each ended by a zero byte. They are listed
// before the first one is dumped, so that the files that come and go meanwhile change nothing.
struct MEMBERS {
    char *names; // owned; null while there are none
    size_t used;
    size_t room;
};

// Lists the names in the current directory that match the pattern, and the one that equals
// it. A pattern without wildcards is not looked for; it is the only name. False, with nothing
// listed, when memory runs out.
bool listmembers(MEMBERS *members, const char *pattern);

void freemembers(MEMBERS *members);

// The first name for null, else the one behind `name`; null at the end.
const char *nextmember(const MEMBERS *members, const char *name);
