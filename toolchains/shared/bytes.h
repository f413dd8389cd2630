/* Files as bytes in memory, and the messages of a stand-in. */
#ifndef TOOLCHAINS_BYTES_H
#define TOOLCHAINS_BYTES_H

#include <stddef.h>
#include <stdio.h>

struct BYTES {
    const unsigned char *data;
    size_t size;
};

/* One execution of a stand-in. */
struct DUMP {
    const char *self; // program name, for messages
    FILE *out;
    FILE *messages;
    int status; // exit status: 0, or 1 after a complaint
};

/* Prints "SELF: PATH: TEXT", or "SELF: PATH(MEMBER): TEXT" if member is not null. */
void remark(const DUMP *dump, const char *path, const char *member, const char *text);

/* Does the same and sets the status to 1. */
void complain(DUMP *dump, const char *path, const char *member, const char *text);

/* Maps a regular file, read-only. Returns null, or the reason why it cannot be read. The caller
   frees the bytes with unmap_file. */
const char *map_file(const char *path, BYTES *bytes);
void unmap_file(BYTES *bytes);

/* Returns size bytes from offset on, or as many as there are. */
BYTES part_of(BYTES whole, size_t offset, size_t size);

/* Whether the bytes at offset equal the first size bytes of the text. */
bool bytes_match(BYTES bytes, size_t offset, const char *text, size_t size);

#endif
