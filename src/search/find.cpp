// Comparing the names of a directory, and of the tree below it, with a whole search list.
//
// Each directory is listed once: its files are compared while its directories are noted to
// be entered afterwards. What the comparison needs of an entry in one directory (its pattern
// and destination moved there) is made when the first name asks for it.
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

// A wildcard entry moved into the directory that is being searched; null until asked for.
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

    // The directory that is being searched.
    bool atStart;         // entries before OPTstartrecurseat take part
    const char *relative; // as seen from the root
    int plain;            // 1 when the matcher accepts its own name as a pattern; -1 unknown
    MOVED *moved;         // per list entry
    int32_t *touched;     // entries with something in `moved` or with `found` set
    int32_t touchedCount; // each at most once for either
    char *relativeName;   // the name being compared, moved here; null until asked for

    GROWTEXT source;
    GROWTEXT dest;
    GROWTEXT scratch;
};

bool literal(const FileInfo *entry) {
    return entry->wild == 0 || OPTexpandwildcards == 0;
}

// Literal names pass on unlooked-for unless they are asked for in every directory, or must
// exist.
bool lookedfor(const FileInfo *entry) {
    if (entry->type == BRAXNAMEOPTION)
        return false;
    return !literal(entry) || OPTkeepunfound == 0 || OPTrecurse == 1;
}

// The key is the last component of the pattern that the entry is compared with.
NAMEUSE use(const void *context, const FileInfo *entry, const char **key) {
    const auto *search = static_cast<const SEARCH *>(context);
    if (!lookedfor(entry))
        return NAMEUSE::none;
    *key = lastcomponent(entry->source);
    if (literal(entry))
        return NAMEUSE::keyed;
    if (entry->type == BRAXNAMEABSOLUTE)
        *key = lastcomponent(behindshared(entry->source, search->root));
    return search->exact && !holdswildcard(*key) ? NAMEUSE::keyed : NAMEUSE::wild;
}

void touch(SEARCH *search, int32_t i) {
    search->touched[search->touchedCount++] = i;
}

void forgetdirectory(SEARCH *search) {
    for (int32_t k = 0; k < search->touchedCount; ++k) {
        const int32_t i = search->touched[k];
        grelease(search->moved[i].pattern);
        grelease(search->moved[i].dest);
        search->list->files[i]->found = FOUNDNOT;
    }
    search->touchedCount = 0;
}

// Records the file under its destination here.
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
    touch(search, i);
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
    touch(search, i);
    return true;
}

// Whether the directory's name can stand in a pattern: the matcher does not accept one with
// a '#', or one that is longer than its buffers.
bool plaindirectory(SEARCH *search, FileInfo *entry) {
    if (search->plain < 0) {
        bool plain = true;
        if (*search->relative != 0 && growset(&search->source, search->relative) &&
            growappend(&search->source, "x"))
            plain = hookmatches(entry, &search->dest, search->source.text, search->source.text, "");
        search->plain = plain ? 1 : 0;
    }
    return search->plain != 0;
}

// In a directory whose name cannot stand in a pattern a plain source is compared with the
// bare name, and the directory is put in front of what the match gives. The result is in
// `scratch`.
bool matchbare(SEARCH *search, FileInfo *entry, const char *name, const char *dest) {
    const char *destFile = lastcomponent(dest);
    return hookmatches(entry, &search->dest, name, entry->source, destFile) &&
           growset(&search->scratch, dest) &&
           (growcut(&search->scratch, destFile - dest),
            growappend(&search->scratch, search->dest.text));
}

// The destination that the entry gives the name here; null when it does not match.
const char *matchentry(SEARCH *search, int32_t i, const char *name) {
    FileInfo *entry = search->list->files[i];
    const MOVED *moved = &search->moved[i];
    if (entry->type == BRAXNAMEPLAIN && !plaindirectory(search, entry))
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

// Compares a file of the directory with every entry that may mean it.
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

// Compares the files of the current directory and makes its directories pending.
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

// The path behind what it shares with the root, less one separator.
const char *relativedirectory(const char *path, const char *root) {
    path = behindshared(path, root);
    return path + (isslash(*path) ? 1 : 0);
}

bool visitdirectory(WALK *walk, void *context) {
    auto *search = static_cast<SEARCH *>(context);
    const int depth = walk->atStart ? search->depth : 1;
    search->relative = relativedirectory(walk->path.text, search->root);
    search->atStart = depth == 0;
    search->plain = -1;
    if (OPTrecurse != 1)
        search->found += FindDirs(search->list, search->relative, depth);
    bool complete = true;
    if (search->index.keyed + search->index.wildCount > 0)
        complete = searchlisting(search, walk);
    forgetdirectory(search);
    return complete;
}

// Makes what the search needs besides the list; false when memory runs out.
bool preparesearch(SEARCH *search) {
    const int32_t count = search->list->count;
    search->moved = gallocarray<MOVED>(count);
    search->touched = gallocarray<int32_t>(count);
    if (search->moved == nullptr || search->touched == nullptr)
        return false;
    for (int32_t i = 0; i < count; ++i) {
        search->moved[i] = {nullptr, nullptr};
        search->list->files[i]->found = FOUNDNOT;
    }
    search->exact = hookisexact();
    return nameindexbuild(&search->index, search->list, use, search);
}

void endsearch(SEARCH *search) {
    forgetdirectory(search);
    nameindexfree(&search->index);
    grelease(search->moved);
    grelease(search->touched);
    growfree(&search->source);
    growfree(&search->dest);
    growfree(&search->scratch);
}

// FindRecursive from the current directory, which `path` is the name of.
int searchhere(const char *path, const char *root, SearchList *list, int depth) {
    SEARCH search = {};
    search.list = list;
    search.root = root;
    search.depth = depth;
    GROWTEXT base = {};
    const size_t length = strlen(path);
    const bool separated = length > 0 && isslash(path[length - 1]);
    if (!growset(&base, path) || (!separated && !growappend(&base, "/")) ||
        !preparesearch(&search) || !WALK_run(base.text, visitdirectory, &search))
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
    if (list == nullptr || list->count == 0)
        return 0;
    SGI_place place;
    if (!SGIsaveplace(&place)) {
        list->files[0]->incomplete = true;
        return 0;
    }
    const int found = chdir(path) == 0 ? searchhere(path, root, list, depth) : 0;
    SGIreturn(&place);
    SGIforgetplace(&place);
    return found;
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
    // The process is there already, so that an unknown name of the directory does no harm.
    char here[65536];
    if (getcwd(here, sizeof here) == nullptr)
        here[0] = 0;
    searchhere(here, here, list, 0);
}
