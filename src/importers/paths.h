// Names taken from the path of a source.
#pragma once

// Returns the part of `path` after its last '\', '/' or ':'; null for null.
const char *pathfilename(const char *path);

// Sets OPTlibrary from the path of a source: the name of a library file (.lib, .a) without
// its extension, or the first folder of another file. Only '\' separates folders here.
// An object's path without a folder leaves OPTlibrary unchanged; a name that does not fit is cut.
void getlibnamefrompath(const char *path);
