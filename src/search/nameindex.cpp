#include "search/nameindex.h"

#include "base/text.h"
#include "mem/galloc.h"
#include "search/record.h"

namespace {

uint32_t bucketof(const NAMEINDEX *index, const char *name) {
    uint32_t hash = 2166136261U;
    for (const char *at = lastcomponent(name); *at != 0; ++at)
        hash = (hash ^ static_cast<uint8_t>(lowerchar(*at))) * 16777619U;
    return (hash ^ hash >> 15) & (index->buckets - 1);
}

void addkeyed(NAMEINDEX *index, int32_t entry, const char *name) {
    int32_t *head = &index->heads[bucketof(index, name)];
    index->next[entry] = *head;
    *head = entry;
    ++index->keyed;
}

} // namespace

bool nameindexbuild(NAMEINDEX *index, const SearchList *list, NAMEUSEFUN use, const void *context) {
    *index = {};
    index->buckets = 16;
    while (index->buckets < static_cast<uint32_t>(list->count))
        index->buckets *= 2;
    index->wilds = gallocarray<int32_t>(list->count);
    index->heads = gallocarray<int32_t>(index->buckets);
    index->next = gallocarray<int32_t>(list->count);
    if (index->wilds == nullptr || index->heads == nullptr || index->next == nullptr)
        return false;
    for (uint32_t i = 0; i < index->buckets; ++i)
        index->heads[i] = -1;
    // Backwards, so that putting an entry in front leaves its bucket ascending.
    const char *key = nullptr;
    for (int32_t i = list->count - 1; i >= 0; --i) {
        if (use(context, list->files[i], &key) == NAMEUSE::keyed)
            addkeyed(index, i, key);
    }
    for (int32_t i = 0; i < list->count; ++i) {
        if (use(context, list->files[i], &key) == NAMEUSE::wild)
            index->wilds[index->wildCount++] = i;
    }
    return true;
}

NAMECURSOR nameindexfind(const NAMEINDEX *index, const char *name) {
    return {index, 0, index->keyed > 0 ? index->heads[bucketof(index, name)] : -1};
}

int32_t nameindexnext(NAMECURSOR *cursor) {
    const NAMEINDEX *index = cursor->index;
    const bool wildLeft = cursor->wildAt < index->wildCount;
    if (wildLeft && (cursor->keyed < 0 || index->wilds[cursor->wildAt] < cursor->keyed))
        return index->wilds[cursor->wildAt++];
    const int32_t entry = cursor->keyed;
    if (entry >= 0)
        cursor->keyed = index->next[entry];
    return entry;
}

void nameindexfree(NAMEINDEX *index) {
    grelease(index->wilds);
    grelease(index->heads);
    grelease(index->next);
}
