// What the importers take from the path of a source.
#pragma once

// The position in `path` just behind its last '\', '/' or ':'; the whole text when it has
// none, null for null.
const char *pathfilename(const char *path);

// Sets OPTlibrary from the path of a source: the name of a library file (.lib, .a) without
// its extension, or else the folder that an object lies in. Only '\' separates folders here.
// A path without a folder leaves OPTlibrary as it was; a name that does not fit is cut.
void getlibnamefrompath(const char *path);
