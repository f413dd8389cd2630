// The importers: each runs its toolchain's programs on an object file or a library and
// appends what their listings tell to a symbol file, one record per object.
//
// They work in the process's working directory, with fixed temporary names (tempdir.h), and
// change it while they run; it is the same afterwards.
#pragma once

// Takes the source's name and the symbol file's. 1: the source was handled, possibly
// without any record when a program failed; a symbol file that did not exist was made. 0: it
// could not be read, the symbol file could not be opened or written whole, the temporary
// directory could not be made or memory ran out; records that were not written whole are
// taken back. The caller reports a 0.
//
// SIGINT, SIGTERM, SIGHUP or SIGQUIT during a call, or a program that ended by SIGINT, ends
// the process as by that signal once nothing but whole records is left.
using IMPORTER = int (*)(const char *source, const char *symbolfile);

int sgitvk(const char *source, const char *symbolfile); // SGI and Nintendo 64
int pctvk(const char *source, const char *symbolfile);  // PC and Xbox
int psxtvk(const char *source, const char *symbolfile); // PlayStation
int ps2tvk(const char *source, const char *symbolfile); // PlayStation 2
int gctvk(const char *source, const char *symbolfile);  // GameCube
