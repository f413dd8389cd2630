// The importers: each runs its toolchain's programs on an object file or a library and appends
// one record per object to a symbol file. Read importwalk.cpp first: it has the steps in order.
//
// They work in the process's working directory, with fixed temporary names (tempdir.h). They
// change the working directory while they run and return to it.
#pragma once

// Takes the names of the source and of the symbol file. Returns 1 when the source was handled,
// also when a program failed and records are missing. Returns 0 when the source could not be
// read, the symbol file could not be opened or written, or the temporary directory could not be
// made; the caller reports this. Callers check importsignal() after each call.
using IMPORTER = int (*)(const char *source, const char *symbolfile);

int sgitvk(const char *source, const char *symbolfile); // SGI and Nintendo 64
int pctvk(const char *source, const char *symbolfile);  // PC and Xbox
int psxtvk(const char *source, const char *symbolfile); // PlayStation
int ps2tvk(const char *source, const char *symbolfile); // PlayStation 2
int gctvk(const char *source, const char *symbolfile);  // GameCube
