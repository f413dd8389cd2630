// Follows patterns with a directory part, one component at a time.
//
// A component without wildcards is examined directly if the matcher is case-sensitive: a few
// system calls instead of a listing.
#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/find.h"
#include "search/record.h"
#include "search/walk.h"
#include "wild/wild.h"

#include <cstring>
#include <unistd.h>

namespace {

struct FOLLOW {
    FileInfo *entry;
    const char *pattern; // a directory's tag is the offset of the rest to follow there
    const char *relativeRoot;
    bool exact; // hookisexact
    int found;
    GROWTEXT component; // the current one
    GROWTEXT name;      // of a file, with its directory
    GROWTEXT dest;
};

// Sets the text to the name as seen from the starting directory.
bool setrooted(GROWTEXT *text, const char *root, const char *name) {
    return *root == 0 ? growset(text, name) : setjoined(text, root, name);
}

void recordfollowed(FOLLOW *follow, const char *directory, SGI_finddata *data) {
    FileInfo *entry = follow->entry;
    char *dest = recordeddest(entry, directory, follow->dest.text);
    if (dest == nullptr)
        return;
    GROWTEXT source = {};
    const char *destRoot = BRAX_typeofname(dest) == BRAXNAMEABSOLUTE ? "" : follow->relativeRoot;
    if (!setrooted(&source, follow->relativeRoot, follow->name.text) ||
        !setrooted(&follow->dest, destRoot, dest))
        entry->incomplete = true;
    else if (recordfile(entry, data, source.text, follow->dest.text))
        ++follow->found;
    growfree(&source);
    gfree(dest);
}

// Tests an entry of the current directory against the last component.
void considerfile(FOLLOW *follow, WALK *walk, SGI_finddata *data) {
    FileInfo *entry = follow->entry;
    if (!passesfilter(data))
        return;
    if (!growset(&follow->name, walk->path.text) || !growappend(&follow->name, data->name)) {
        entry->incomplete = true;
    } else if (hookmatches(entry, &follow->dest, follow->name.text, entry->source, entry->dest)) {
        entry->found = FOUNDNAME;
        recordfollowed(follow, walk->path.text, data);
    }
}

// Tests an entry of the current directory against a directory component; `rest` is the part of
// the pattern to follow there.
void considerdirectory(FOLLOW *follow, WALK *walk, const SGI_finddata *data, const char *rest) {
    FileInfo *entry = follow->entry;
    const char *component = follow->component.text;
    if ((data->attrib & SGIATTRDIRECTORY) == 0)
        return;
    if (isdots(data->name) && strcmp(data->name, component) != 0)
        return;
    if (!hookmatches(entry, &follow->dest, data->name, component, ""))
        return;
    entry->found = FOUNDNAME;
    if (!WALK_pend(walk, data->name, rest - follow->pattern, holdswildcard(component)))
        entry->incomplete = true;
}

void consider(FOLLOW *follow, WALK *walk, SGI_finddata *data, const char *end) {
    follow->entry->found = FOUNDNOT;
    if (*end == 0)
        considerfile(follow, walk, data);
    else
        considerdirectory(follow, walk, data, end + 1);
}

void considerall(FOLLOW *follow, WALK *walk, const char *end) {
    const SGI_handle handle = SGIfindopen();
    if (handle == 0)
        return;
    const bool wild = BRAX_iswildcards(follow->component.text);
    SGI_finddata data;
    for (int state; (state = SGIfindquick(handle, &data)) != 0;) {
        if (state != SGIFOUNDUNKNOWN)
            consider(follow, walk, &data, end);
        if (follow->entry->incomplete || (!wild && follow->entry->found != FOUNDNOT))
            break;
    }
    SGIfindclose(handle);
}

// Tests the only entry that a component without wildcards can match.
void considerone(FOLLOW *follow, WALK *walk, const char *end) {
    SGI_finddata data = {};
    follow->entry->found = FOUNDNOT;
    if (copytext(data.name, follow->component.text, sizeof data.name) && SGIfindfill(&data))
        consider(follow, walk, &data, end);
}

bool visitfollowed(WALK *walk, void *context) {
    auto *follow = static_cast<FOLLOW *>(context);
    const char *rest = follow->pattern + walk->tag;
    // Skip repeated separators.
    for (; isslash(*rest) && walk->path.length > 0; ++rest) {
        if (!growappend(&walk->path, "/"))
            return false;
    }
    if (!growreserve(&follow->component, static_cast<int64_t>(strlen(rest)) + 1))
        return false;
    const char *end = GetFirstDir(rest, follow->component.text);
    if (end == rest)
        return true;
    if (follow->exact && !holdswildcard(follow->component.text))
        considerone(follow, walk, end);
    else
        considerall(follow, walk, end);
    return !follow->entry->incomplete;
}

// Follows the pattern from the directory, or from the current one when that is null.
int followfrom(const char *directory, const char *pattern, FileInfo *entry,
               const char *relativeRoot, const char *prefix) {
    FOLLOW follow = {entry, pattern, relativeRoot, hookisexact(), 0, {}, {}, {}};
    if (!WALK_run(directory, prefix, visitfollowed, &follow))
        entry->incomplete = true;
    growfree(&follow.component);
    growfree(&follow.name);
    growfree(&follow.dest);
    return follow.found;
}

// Sets the directory that an absolute pattern starts from, and returns the rest of the pattern.
// Null when there is no directory or memory runs out.
const char *startdirectory(const char *pattern, GROWTEXT *directory, FileInfo *entry) {
    bool made = true;
    const char *rest = pattern;
    if (isletter(pattern[0]) && pattern[1] == ':') {
        const bool alone = pattern[2] == 0 || isslash(pattern[2]);
        made = growappend(directory, pattern, 2) && (!alone || growappend(directory, "\\"));
        rest += isslash(pattern[2]) ? 3 : 2;
    } else if (pattern[0] == '\\' && pattern[1] == '\\') {
        const char *last = strrchr(pattern, '/');
        if (last == nullptr)
            return nullptr;
        rest = last + 1;
        made = growappend(directory, pattern, rest - pattern);
    } else {
        rest += 1;
        made = growappend(directory, "/");
    }
    entry->incomplete = entry->incomplete || !made;
    return made ? rest : nullptr;
}

int followall(SearchList *list, int8_t type, int32_t first, const char *relative) {
    int found = 0;
    for (int32_t i = first; i < list->count; ++i) {
        FileInfo *entry = list->files[i];
        if (entry->type == type && (entry->wild != 0 || OPTkeepunfound == 0))
            found += FollowDirs(entry->source, entry, relative, "");
    }
    return found;
}

} // namespace

const char *GetFirstDir(const char *pattern, char *component) {
    while (*pattern != 0 && !isslash(*pattern))
        *component++ = *pattern++;
    *component = 0;
    return pattern;
}

int FollowDirs(const char *pattern, FileInfo *entry, const char *relativeRoot, const char *prefix) {
    if (*prefix != 0 || BRAX_typeofname(pattern) != BRAXNAMEABSOLUTE)
        return followfrom(nullptr, pattern, entry, relativeRoot, prefix);
    GROWTEXT directory = {};
    const char *rest = startdirectory(pattern, &directory, entry);
    const int found =
        rest == nullptr ? 0 : followfrom(directory.text, rest, entry, "", directory.text);
    growfree(&directory);
    return found;
}

int FindAbsolutes(SearchList *list) {
    if (list == nullptr || OPTrecurse != 0)
        return 0;
    return followall(list, BRAXNAMEABSOLUTE, 0, "");
}

int FindDirs(SearchList *list, const char *relative, int depth) {
    if (list == nullptr)
        return 0;
    const int32_t first = depth != 0 && OPTstartrecurseat > 0 ? OPTstartrecurseat : 0;
    return followall(list, BRAXNAMERELATIVE, first, relative);
}
