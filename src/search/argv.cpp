#include "search/argv.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"

#include <climits>
#include <cstring>

int32_t BRAXargnum = 0;
char **BRAXsargv = nullptr;
char **BRAXdargv = nullptr;
int32_t *BRAXdateargv = nullptr;
int32_t *BRAXsizeargv = nullptr;
uint8_t *BRAXattribargv = nullptr;

namespace {

bool kept(const FileInfo *entry) {
    return OPTkeepunfound != 0 || (entry->type == BRAXNAMEOPTION && OPTkeepopts != 0);
}

// Number of files; 0 also if the list lost a match or the number does not fit an int.
int64_t countfiles(const SearchList *list) {
    int64_t count = 0;
    for (int32_t i = 0; i < list->count; ++i) {
        const FileInfo *entry = list->files[i];
        if (entry->incomplete)
            return 0;
        count += entry->nmatches > 0 ? entry->nmatches : kept(entry) ? 1 : 0;
    }
    return count <= INT_MAX ? count : 0;
}

template <typename T> bool allocate(T *&vector, int wanted, int64_t count) {
    if (wanted != 0)
        vector = gallocarray<T>(count);
    return wanted == 0 || vector != nullptr;
}

bool allocatevectors(int64_t count) {
    return allocate(BRAXsargv, 1, count) && allocate(BRAXdargv, 1, count) &&
           allocate(BRAXdateargv, OPTmakedatelist, count) &&
           allocate(BRAXsizeargv, OPTmakesizelist, count) &&
           allocate(BRAXattribargv, OPTmakeattriblist, count);
}

// Counts the element first, so that freeFiles also frees an incomplete one.
bool appendfile(const Match *match) {
    const int32_t index = BRAXargnum++;
    BRAXsargv[index] = galloctext(match->source);
    BRAXdargv[index] = galloctext(match->dest);
    if (BRAXdateargv != nullptr)
        BRAXdateargv[index] = static_cast<int32_t>(match->date);
    if (BRAXsizeargv != nullptr)
        BRAXsizeargv[index] = static_cast<int32_t>(match->size);
    if (BRAXattribargv != nullptr)
        BRAXattribargv[index] = match->attrib;
    return BRAXsargv[index] != nullptr && BRAXdargv[index] != nullptr;
}

bool appendentry(const FileInfo *entry) {
    for (int32_t i = 0; i < entry->nmatches; ++i) {
        if (!appendfile(entry->matches[i]))
            return false;
    }
    const Match pattern = {entry->source, entry->dest, 0, 0, 0};
    return entry->nmatches > 0 || !kept(entry) || appendfile(&pattern);
}

void releasetexts(char **&texts) {
    for (int32_t i = 0; texts != nullptr && i < BRAXargnum; ++i)
        grelease(texts[i]);
    grelease(texts);
}

} // namespace

void MakeArgvs(const SearchList *list) {
    BRAXargnum = 0;
    if (list == nullptr)
        return;
    const int64_t count = countfiles(list);
    if (count == 0)
        return;
    bool complete = allocatevectors(count);
    for (int32_t i = 0; complete && i < list->count; ++i)
        complete = appendentry(list->files[i]);
    if (!complete)
        freeFiles();
}

void freeFiles() {
    releasetexts(BRAXsargv);
    releasetexts(BRAXdargv);
    BRAXargnum = 0;
    grelease(BRAXdateargv);
    grelease(BRAXsizeargv);
    grelease(BRAXattribargv);
}
