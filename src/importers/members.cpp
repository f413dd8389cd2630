#include "importers/members.h"

#include "mem/galloc.h"
#include "search/directory.h"
#include "wild/wild.h"

#include <cstring>

namespace {

constexpr char wildcards[] = "*?#";

bool addmember(MEMBERS *members, const char *name) {
    const size_t size = strlen(name) + 1;
    if (size > members->room - members->used) {
        const size_t room = 2 * members->room + size + 4096;
        auto *larger = gallocarray<char>(static_cast<int64_t>(room));
        if (larger == nullptr)
            return false;
        if (members->names != nullptr) {
            memcpy(larger, members->names, members->used);
            gfree(members->names);
        }
        members->names = larger;
        members->room = room;
    }
    memcpy(members->names + members->used, name, size);
    members->used += size;
    return true;
}

bool ismember(const char *name, const char *pattern) {
    char output[2048] = ""; // stays empty: nothing is made from the match
    return strcmp(name, pattern) == 0 || WILD_match(output, name, pattern, "") != 0;
}

bool addmatching(MEMBERS *members, const char *pattern) {
    const SGI_handle handle = SGIfindopen();
    if (handle == 0)
        return true;
    SGI_finddata data = {};
    bool added = true;
    while (added && SGIfindquick(handle, &data) != 0)
        added = !ismember(data.name, pattern) || addmember(members, data.name);
    SGIfindclose(handle);
    return added;
}

} // namespace

bool listmembers(MEMBERS *members, const char *pattern) {
    *members = {};
    const bool listed = strpbrk(pattern, wildcards) != nullptr ? addmatching(members, pattern)
                                                               : addmember(members, pattern);
    if (!listed)
        freemembers(members);
    return listed;
}

void freemembers(MEMBERS *members) {
    if (members->names != nullptr)
        gfree(members->names);
    *members = {};
}

const char *nextmember(const MEMBERS *members, const char *name) {
    const char *next = name == nullptr ? members->names : name + strlen(name) + 1;
    return next != members->names + members->used ? next : nullptr;
}
