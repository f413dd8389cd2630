/* Extraction of the members of a library ("!<arch>"), in the forms that today's archivers,
   librarians and their predecessors write: long names in a table of the archive's own, with line
   ends or NULs between them, or in front of the member. */
#ifndef TOOLCHAINS_ARCHIVE_H
#define TOOLCHAINS_ARCHIVE_H

/* Writes every member of the archive into the directory, under its name without any directories
   that the archive gives it, so that nothing is written elsewhere. A member whose name another of
   this archive had before gets its position in the archive put in front of the extension
   ("a~7.obj"); a file that was there before is replaced. Returns the exit status: 0, or 1 when the
   archive or one of its members could not be read or written; each is told on standard error,
   beginning with the program's own name, and all other members are extracted. */
int archive_extract(const char *self, const char *archive, const char *directory);

#endif
