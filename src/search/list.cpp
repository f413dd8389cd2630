// The arrays double when full, so that adding n elements takes time proportional to n.
#include "search/list.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"

#include <algorithm>
#include <utility>

namespace {

void freematch(Match *match) {
    grelease(match->source);
    grelease(match->dest);
    gfree(match);
}

void freeentry(FileInfo *entry) {
    for (int32_t i = 0; i < entry->nmatches; ++i)
        freematch(entry->matches[i]);
    grelease(entry->matches);
    grelease(entry->source);
    grelease(entry->dest);
    gfree(entry);
}

uint8_t eitherwild(const char *source, const char *dest) {
    return BRAX_iswildcards(source) || BRAX_iswildcards(dest) ? 1 : 0;
}

FileInfo *createentry(const char *source, const char *dest) {
    auto *entry = gallocarray<FileInfo>(1);
    if (entry == nullptr)
        return nullptr;
    *entry = {};
    entry->source = galloctext(source);
    entry->dest = galloctext(dest);
    if (entry->source == nullptr || entry->dest == nullptr) {
        freeentry(entry);
        return nullptr;
    }
    entry->type = static_cast<int8_t>(BRAX_typeofname(source));
    entry->wild = eitherwild(source, dest);
    entry->separateDest = dest == source ? 0 : 1;
    return entry;
}

bool hasindex(const SearchList *list, int32_t index) {
    return list != nullptr && index >= 0 && index < list->count;
}

} // namespace

SearchList *CreateSearchList() {
    auto *list = gallocarray<SearchList>(1);
    if (list != nullptr)
        *list = {};
    return list;
}

bool AddToSearchList(SearchList *list, const char *source, const char *dest) {
    if (list == nullptr || !growarray(list->files, list->count, list->capacity))
        return false;
    FileInfo *entry = createentry(source, dest);
    if (entry == nullptr)
        return false;
    list->files[list->count++] = entry;
    return true;
}

int UpdateSearchList(SearchList *list, int32_t index, const char *source, const char *dest) {
    if (!hasindex(list, index))
        return 0;
    FileInfo *entry = list->files[index];
    FileInfo *updated = createentry(source != nullptr ? source : entry->source,
                                    dest != nullptr ? dest : entry->dest);
    if (updated == nullptr)
        return 0;
    updated->wild = eitherwild(source, dest);
    updated->separateDest = entry->separateDest;
    std::swap(*entry, *updated);
    freeentry(updated);
    return 1;
}

bool RemoveFromSearchList(SearchList *list, int32_t index, char *source, char *dest) {
    const bool found = hasindex(list, index);
    FileInfo *entry = found ? list->files[index] : nullptr;
    if (source != nullptr)
        copytext(source, found ? entry->source : "", BRAXFIELDSIZE);
    if (dest != nullptr)
        copytext(dest, found ? entry->dest : "", BRAXFIELDSIZE);
    if (!found)
        return false;
    freeentry(entry);
    std::copy(list->files + index + 1, list->files + list->count, list->files + index);
    --list->count;
    if (list->count == 0) {
        grelease(list->files);
        list->capacity = 0;
    }
    return true;
}

void DestroySearchList(SearchList *list) {
    if (list == nullptr)
        return;
    for (int32_t i = 0; i < list->count; ++i)
        freeentry(list->files[i]);
    grelease(list->files);
    gfree(list);
}

bool AddMatch(FileInfo *entry, const Match *match) {
    if (entry == nullptr)
        return false;
    auto *copy = gallocarray<Match>(1);
    if (copy != nullptr) {
        *copy = *match;
        copy->source = galloctext(match->source);
        copy->dest = galloctext(match->dest);
        if (copy->source != nullptr && copy->dest != nullptr &&
            growarray(entry->matches, entry->nmatches, entry->matchCapacity)) {
            entry->matches[entry->nmatches++] = copy;
            return true;
        }
        freematch(copy);
    }
    entry->incomplete = true;
    return false;
}
