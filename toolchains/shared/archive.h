/* Libraries ("!<arch>", thin ones "!<thin>"), in the forms that archivers and librarians write:
   long names are in a table of the library, ended by line feeds or NULs, or before a member's
   data. */
#ifndef TOOLCHAINS_ARCHIVE_H
#define TOOLCHAINS_ARCHIVE_H

#include "bytes.h"

#include <string>

/* A walk over the members of a library. The caller owns the bytes. */
struct ARCHIVE {
    BYTES bytes;
    size_t next; // offset of the next member's header
    bool thin;   // the members are files of their own
    BYTES longNames;
    size_t position; // of the last member, from 1; counts indexes and tables of names
};

struct MEMBER {
    std::string name; // in a thin library a path, relative to the library's directory
    BYTES data;       // empty in a thin library
    bool nested;      // the name is a library's, with the member's header at origin
    size_t origin;
};

enum ARCHIVEEND { ARCHIVE_MEMBER, ARCHIVE_END, ARCHIVE_DAMAGED };

/* Starts a walk. False if the bytes are no library. */
bool archive_start(ARCHIVE *archive, BYTES bytes);

/* Reads the next member; skips indexes of symbols and tables of names. The walk ends with the first
   result other than ARCHIVE_MEMBER. */
ARCHIVEEND archive_next(ARCHIVE *archive, MEMBER *member);

/* Reads the data of a member of the thin library at path, and its name if it is nested. Returns
   null, or the reason why the member cannot be read. The caller frees *mapped, which has the data,
   with unmap_file. */
const char *map_member(const char *path, MEMBER *member, BYTES *mapped);

/* Writes every member of a library into the directory, under its name without directories. Replaces
   existing files. A second member of the same name gets its position before the extension
   ("a~7.obj"). Returns the exit status: 0, or 1 if the library or a member cannot be read or
   written. Reports each failure on standard error and extracts all other members. */
int archive_extract(const char *self, const char *path, const char *directory);

#endif
