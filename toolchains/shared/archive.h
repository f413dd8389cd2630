/* Libraries ("!<arch>", thin ones "!<thin>"), in the forms that archivers and librarians write:
   long names in a table of the library, ended by line feeds or NULs, or in front of the member. */
#ifndef TOOLCHAINS_ARCHIVE_H
#define TOOLCHAINS_ARCHIVE_H

#include "bytes.h"

#include <string>

/* A walk over the members of a library. The bytes remain the caller's. */
struct ARCHIVE {
    BYTES bytes;
    size_t next; // offset of the next member's header
    bool thin;   // the members are files of their own
    BYTES longNames;
    size_t position; // of the last member, from 1 on; indexes and tables of names count
};

struct MEMBER {
    std::string name; // in a thin library a path, relative to the library's directory
    BYTES data;       // empty in a thin library
    bool nested;      // the name is that of a library, which has the member's header at origin
    size_t origin;
};

enum ARCHIVEEND { ARCHIVE_MEMBER, ARCHIVE_END, ARCHIVE_DAMAGED };

/* Starts at the first member. False if the bytes are no library. */
bool archive_start(ARCHIVE *archive, BYTES bytes);

/* Reads the next member; indexes of symbols and tables of names are skipped. After a result other
   than ARCHIVE_MEMBER the walk has ended. */
ARCHIVEEND archive_next(ARCHIVE *archive, MEMBER *member);

/* Finds the data of a thin library's member, and the name if another library holds it. path is the
   thin library's. Returns null, or the reason why the member cannot be read. The caller releases
   *mapped, which holds the data, with unmap_file. */
const char *map_member(const char *path, MEMBER *member, BYTES *mapped);

/* Writes every member of a library into the directory, under its name without directories, so that
   no file outside is written. A member whose name another had before gets its position put in front
   of the extension ("a~7.obj"); an existing file is replaced. Returns the exit status: 0, or 1 if
   the library or a member could not be read or written; each is reported on standard error, and all
   other members are extracted. */
int archive_extract(const char *self, const char *path, const char *directory);

#endif
