#include "importers/members.h"

#include "search/directory.h"
#include "wild/wild.h"

#include <cstring>

namespace {

bool addmember(GROWTEXT *members, const char *name) {
    return growappend(members, name, static_cast<int64_t>(strlen(name)) + 1);
}

} // namespace

// A name without wildcards needs no search: the source was found to be readable.
bool listmembers(GROWTEXT *members, const char *pattern) {
    char output[sizeof SGI_finddata::name];
    // All matches find the same number of blocks held, so that they fail all or none.
    bool added = growroom(members, sizeof output);
    if (strpbrk(pattern, "*?#") == nullptr)
        return added && (*pattern == 0 || addmember(members, pattern));
    const SGI_handle handle = added ? SGIfindopen() : 0;
    if (handle == 0)
        return added;
    SGI_finddata data = {};
    while (added && SGIfindquick(handle, &data) != 0)
        added =
            WILD_match(output, data.name, pattern, pattern) == 0 || addmember(members, data.name);
    SGIfindclose(handle);
    return added;
}
