/* Files as bytes in memory, and the messages of a stand-in. */
#ifndef TOOLCHAINS_BYTES_H
#define TOOLCHAINS_BYTES_H

#include <stddef.h>
#include <stdio.h>

struct BYTES {
    const unsigned char *data;
    size_t size;
};

/* A run of a stand-in. */
struct DUMP {
    const char *self; // program name, for messages
    FILE *out;
    FILE *messages;
    int status; // exit status: 0, or 1 after a complaint
};

/* Prints "SELF: PATH: TEXT", or "SELF: PATH(MEMBER): TEXT" if member is not null. */
void remark(const DUMP *dump, const char *path, const char *member, const char *text);

/* The same, and the status becomes 1. */
void complain(DUMP *dump, const char *path, const char *member, const char *text);

/* Maps a regular file, read-only. Returns null, or the reason why it cannot be read. The caller
   releases the bytes with unmap_file. */
const char *map_file(const char *path, BYTES *bytes);
void unmap_file(BYTES *bytes);

/* The part of size bytes that starts at offset; what lies beyond the end is left out. */
BYTES part_of(BYTES whole, size_t offset, size_t size);

/* Whether the bytes at offset are those of the text, of which size bytes are compared. */
bool bytes_match(BYTES bytes, size_t offset, const char *text, size_t size);

#endif
