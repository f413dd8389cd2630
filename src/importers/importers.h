// The importers. Each runs its toolchain's programs on an object file or a library, and reads
// their listings.
//
// In: an object file or a library. Out: one record per object, appended to a symbol file. Read
// importwalk.cpp first: `-tgc libx.a` calls gctvk, and tvkwalk there has the steps in order.
// gc.cpp, pc.cpp, psx.cpp, ps2.cpp and sgi.cpp have each toolchain's commands and listing.
// symbolfile.cpp writes the records.
//
// Importers use fixed temporary names in the working directory (tempdir.h). They change the
// working directory and return to it.
#pragma once

// Imports a source into a symbol file. Returns 1 also when a program fails and records are missing.
// Returns 0 when the source cannot be read, the symbol file cannot be opened or written, or the
// temporary directory cannot be made; the caller reports this. Callers check importsignal()
// (command.h) after each call.
using IMPORTER = int (*)(const char *source, const char *symbolfile);

int sgitvk(const char *source, const char *symbolfile); // SGI and Nintendo 64
int pctvk(const char *source, const char *symbolfile);  // PC and Xbox
int psxtvk(const char *source, const char *symbolfile); // PlayStation
int ps2tvk(const char *source, const char *symbolfile); // PlayStation 2
int gctvk(const char *source, const char *symbolfile);  // GameCube
