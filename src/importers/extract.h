// Extraction of a library's members into the temporary directory.
#pragma once

#include "importers/importwalk.h"
#include "search/directory.h"

// Makes the temporary directory in the current directory, `home`, and runs the toolchain's
// extractor on the library; ignores its status. Returns to `home`. False when the temporary
// directory cannot be made, or cannot be entered and the toolchain requires it.
bool extractlibrary(const TOOLCHAIN *toolchain, const char *library, const SGI_place *home);
