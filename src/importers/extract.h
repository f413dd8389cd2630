// Extraction of a library's members into the temporary directory.
#pragma once

#include "importers/importwalk.h"
#include "search/directory.h"

// Makes the temporary directory in the current one, `home`, and runs the toolchain's
// extractor on the library, whose failure is said and changes nothing; when it wrote a member over
// the library's name there, it runs once more by way of the parent directory. `home` is the current
// directory again. False when the directory could not be made or the library not be reached
// from inside it; nothing was extracted then.
bool extractlibrary(const TOOLCHAIN *toolchain, const char *library, const SGI_place *home);
