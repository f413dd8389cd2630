// Extraction of a library's members into the temporary directory.
#pragma once

#include "importers/importwalk.h"
#include "search/directory.h"

// Makes the temporary directory in the current directory, which is `home`, and runs the
// toolchain's extractor on the library, whose status is not examined. `home` is the current
// directory again. False when the temporary directory could not be made, or entered where the
// toolchain requires it.
bool extractlibrary(const TOOLCHAIN *toolchain, const char *library, const SGI_place *home);
