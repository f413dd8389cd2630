// Compares the names of a directory, and of the tree below it, with a whole search list.
//
// Each directory is listed once: its files are compared, its subdirectories made pending. An
// entry's pattern and destination are moved into the directory when first compared there.
#include "search/find.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/nameindex.h"
#include "search/record.h"
#include "search/relative.h"
#include "search/walk.h"
#include "wild/wild.h"

#include <cstring>
#include <unistd.h>

namespace {

// A wildcard entry moved into the directory being searched; null until needed.
struct MOVED {
    char *pattern;
    char *dest;
};

struct SEARCH {
    SearchList *list;
    const char *root;
    int depth;
    int found;
    bool exact; // hookisexact
    NAMEINDEX index;

    // The directory being searched.
    bool atStart;         // entries before OPTstartrecurseat take part
    const char *relative; // its path as seen from the root
    bool plain;           // the matcher accepts its path as a pattern
    MOVED *moved;         // per list entry
    int32_t *touched;     // literal entries found and wildcard entries moved here, each once
    int32_t touchedCount;
    char *relativeName; // the name being compared, moved here; null until needed

    GROWTEXT source;
    GROWTEXT dest;
    GROWTEXT scratch;
};

bool literal(const FileInfo *entry) {
    return entry->wild == 0 || OPTexpandwildcards == 0;
}

// Literal names are searched for only if they are compared in every directory, or must exist.
bool issearched(const FileInfo *entry) {
    if (entry->type == BRAXNAMEOPTION)
        return false;
    return !literal(entry) || OPTkeepunfound == 0 || OPTrecurse == 1;
}

// The file name that the entry matches as a whole; null when it must be compared with every name.
const char *keyof(const SEARCH *search, const FileInfo *entry) {
    const char *source = entry->source;
    if (!literal(entry) && entry->type == BRAXNAMEABSOLUTE)
        source = aftershared(source, search->root);
    const char *key = lastcomponent(source);
    return literal(entry) || (search->exact && !holdswildcard(key)) ? key : nullptr;
}

void resetdirectory(SEARCH *search) {
    for (int32_t k = 0; k < search->touchedCount; ++k) {
        const int32_t i = search->touched[k];
        grelease(search->moved[i].pattern);
        grelease(search->moved[i].dest);
        search->list->files[i]->found = FOUNDNOT;
    }
    search->touchedCount = 0;
}

// Records a file of this directory.
void record(SEARCH *search, FileInfo *entry, SGI_finddata *data, const char *dest) {
    char *recorded = recordeddest(entry, search->relative, dest);
    if (recorded == nullptr)
        return;
    if (!growset(&search->source, search->relative) || !growappend(&search->source, data->name))
        entry->incomplete = true;
    else if (recordfile(entry, data, search->source.text, recorded))
        ++search->found;
    gfree(recorded);
}

void compareliteral(SEARCH *search, int32_t i, SGI_finddata *data) {
    FileInfo *entry = search->list->files[i];
    if (entry->found != FOUNDNOT || stricmp(data->name, entry->source) != 0)
        return;
    char *dest = BRAX_makerelative(entry->dest, search->relative);
    if (dest == nullptr) {
        entry->incomplete = true;
        return;
    }
    record(search, entry, data, dest);
    gfree(dest);
    entry->found = FOUNDRECORDED;
    search->touched[search->touchedCount++] = i;
}

bool moveentry(SEARCH *search, int32_t i) {
    FileInfo *entry = search->list->files[i];
    MOVED *moved = &search->moved[i];
    if (moved->pattern != nullptr)
        return true;
    moved->dest = BRAX_makerelative(entry->dest, search->relative);
    moved->pattern = entry->type == BRAXNAMEABSOLUTE
                         ? BRAX_makerelativeAbs(entry->source, search->root)
                         : BRAX_makerelative(entry->source, search->relative);
    if (moved->dest == nullptr || moved->pattern == nullptr) {
        grelease(moved->dest);
        grelease(moved->pattern);
        return false;
    }
    search->touched[search->touchedCount++] = i;
    return true;
}

// Whether the matcher accepts the directory's path as a pattern. It refuses one that contains a
// '#' or is longer than its buffers.
bool matchesitself(SEARCH *search) {
    return *search->relative == 0 || !setjoined(&search->source, search->relative, "x") ||
           hookmatches(search->list->files[0], &search->dest, search->source.text,
                       search->source.text, "");
}

// Compares a plain source with the bare name, and puts the directory of `dest` before the
// resulting name. The result is in `scratch`.
bool matchbare(SEARCH *search, FileInfo *entry, const char *name, const char *dest) {
    const char *destFile = lastcomponent(dest);
    if (!hookmatches(entry, &search->dest, name, entry->source, destFile))
        return false;
    const bool made = growset(&search->scratch, "") &&
                      growappend(&search->scratch, dest, destFile - dest) &&
                      growappend(&search->scratch, search->dest.text);
    entry->incomplete = entry->incomplete || !made;
    return made;
}

// The destination that the entry gives the name; null when it does not match.
const char *matchentry(SEARCH *search, int32_t i, const char *name) {
    FileInfo *entry = search->list->files[i];
    const MOVED *moved = &search->moved[i];
    if (entry->type == BRAXNAMEPLAIN && !search->plain)
        return matchbare(search, entry, name, moved->dest) ? search->scratch.text : nullptr;
    if (hookmatches(entry, &search->dest, search->relativeName, moved->pattern, moved->dest) ||
        hookmatches(entry, &search->dest, name, moved->pattern, moved->dest))
        return search->dest.text;
    return nullptr;
}

void comparewild(SEARCH *search, int32_t i, SGI_finddata *data) {
    FileInfo *entry = search->list->files[i];
    if (search->relativeName == nullptr)
        search->relativeName = BRAX_makerelative(data->name, search->relative);
    if (search->relativeName == nullptr || !moveentry(search, i)) {
        entry->incomplete = true;
        return;
    }
    const char *dest = matchentry(search, i, data->name);
    entry->found = dest != nullptr ? FOUNDRECORDED : FOUNDNOT;
    if (dest != nullptr)
        record(search, entry, data, dest);
}

// Compares a file of the directory with every entry that may match it. False when memory runs
// out.
bool comparename(SEARCH *search, SGI_finddata *data) {
    bool complete = true;
    NAMECURSOR cursor = nameindexfind(&search->index, data->name);
    for (int32_t i; complete && (i = nameindexnext(&cursor)) >= 0;) {
        if (i < OPTstartrecurseat && !search->atStart)
            continue;
        if (literal(search->list->files[i]))
            compareliteral(search, i, data);
        else
            comparewild(search, i, data);
        complete = !search->list->files[i]->incomplete;
    }
    grelease(search->relativeName);
    return complete;
}

// Compares the files of the current directory and makes its subdirectories pending.
bool searchlisting(SEARCH *search, WALK *walk) {
    const SGI_handle handle = SGIfindopen();
    if (handle == 0)
        return true;
    bool complete = true;
    SGI_finddata data;
    for (int state; complete && (state = SGIfindquick(handle, &data)) != 0;) {
        if (state == SGIFOUNDUNKNOWN)
            continue;
        if (OPTrecurse == 1 && (data.attrib & SGIATTRDIRECTORY) != 0 && !isdots(data.name))
            complete = WALK_pend(walk, data.name, 0, true);
        if (complete && passesfilter(&data))
            complete = comparename(search, &data);
    }
    SGIfindclose(handle);
    return complete;
}

bool visitdirectory(WALK *walk, void *context) {
    auto *search = static_cast<SEARCH *>(context);
    const int depth = walk->atStart ? search->depth : 1;
    search->relative = aftershared(walk->path.text, search->root);
    search->relative += isslash(*search->relative) ? 1 : 0;
    search->atStart = depth == 0;
    search->plain = matchesitself(search);
    if (OPTrecurse != 1)
        search->found += FindDirs(search->list, search->relative, depth);
    const bool complete = nameindexempty(&search->index) || searchlisting(search, walk);
    resetdirectory(search);
    return complete;
}

// Allocates what the search needs and fills the index; false when memory runs out.
bool preparesearch(SEARCH *search) {
    const int32_t count = search->list->count;
    search->exact = hookisexact();
    search->moved = gallocarray<MOVED>(count);
    search->touched = gallocarray<int32_t>(count);
    if (!nameindexcreate(&search->index, count) || search->moved == nullptr ||
        search->touched == nullptr)
        return false;
    for (int32_t i = count - 1; i >= 0; --i) {
        FileInfo *entry = search->list->files[i];
        search->moved[i] = {nullptr, nullptr};
        entry->found = FOUNDNOT;
        if (issearched(entry))
            nameindexadd(&search->index, i, keyof(search, entry));
    }
    return true;
}

void endsearch(SEARCH *search) {
    resetdirectory(search);
    nameindexfree(&search->index);
    grelease(search->moved);
    grelease(search->touched);
    growfree(&search->source);
    growfree(&search->dest);
    growfree(&search->scratch);
}

// FindRecursive from the directory, or from the current one, called `path`, when that is null.
int searchfrom(const char *directory, const char *path, const char *root, SearchList *list,
               int depth) {
    SEARCH search = {};
    search.list = list;
    search.root = root;
    search.depth = depth;
    GROWTEXT base = {};
    if (!setjoined(&base, path, "") || !preparesearch(&search) ||
        !WALK_run(directory, base.text, visitdirectory, &search))
        list->files[0]->incomplete = true;
    endsearch(&search);
    growfree(&base);
    return search.found;
}

void searchlistedpaths(SearchList *list, char *paths) {
    for (char *element = paths; element != nullptr;) {
        char *end = strchr(element, ';');
        if (end != nullptr)
            *end = 0;
        FindRecursive(element, "", list, 0);
        if (end != nullptr)
            *end++ = ';';
        element = end;
    }
}

} // namespace

int FindRecursive(const char *path, const char *root, SearchList *list, int depth) {
    return list == nullptr || list->count == 0 ? 0 : searchfrom(path, path, root, list, depth);
}

void BRAX_findbatch(SearchList *list) {
    if (list == nullptr || list->count == 0)
        return;
    FindAbsolutes(list);
    if (OPTrecurse == 2) {
        if (OPTenvpath != nullptr)
            searchlistedpaths(list, OPTenvpath);
        return;
    }
    // Not entered by its name, which may be unknown.
    char here[65536];
    if (getcwd(here, sizeof here) == nullptr)
        here[0] = 0;
    searchfrom(nullptr, here, here, list, 0);
}
