#include "importers/paths.h"

#include "base/text.h"
#include "symbols/options.h"

#include <cstring>

const char *pathfilename(const char *path) {
    return path != nullptr ? filepart(path) : nullptr;
}

void getlibnamefrompath(const char *path) {
    const char *colon = strchr(path, ':');
    const char *start = colon != nullptr ? colon + 1 : path;
    const char *end = strchr(start, '.');
    if (end != nullptr && (stricmp(end, ".lib") == 0 || stricmp(end, ".a") == 0)) {
        for (const char *p = end; p > start; --p) {
            if (p[-1] == '\\') {
                start = p;
                break;
            }
        }
    } else {
        start += *start == '\\' ? 1 : 0;
        end = strchr(start, '\\');
        if (end == nullptr)
            return;
    }
    copytext(OPTlibrary, start, static_cast<size_t>(end - start), sizeof OPTlibrary);
}
