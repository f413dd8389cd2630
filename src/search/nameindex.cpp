#include "search/nameindex.h"

#include "base/text.h"
#include "mem/galloc.h"
#include "search/relative.h"

#include <algorithm>

namespace {

uint32_t bucketof(const NAMEINDEX *index, const char *name) {
    uint32_t hash = 2166136261U;
    for (const char *at = lastcomponent(name); *at != 0; ++at)
        hash = (hash ^ static_cast<uint8_t>(lowerchar(*at))) * 16777619U;
    return (hash ^ hash >> 15) & (index->buckets - 1);
}

} // namespace

bool nameindexcreate(NAMEINDEX *index, int32_t count) {
    *index = {nullptr, nullptr, 16, 0};
    while (index->buckets < static_cast<uint32_t>(count))
        index->buckets *= 2;
    index->heads = gallocarray<int32_t>(index->buckets + 1);
    index->next = gallocarray<int32_t>(count);
    if (index->heads == nullptr || index->next == nullptr)
        return false;
    std::fill_n(index->heads, index->buckets + 1, -1);
    return true;
}

void nameindexadd(NAMEINDEX *index, int32_t entry, const char *key) {
    index->keyed += key != nullptr ? 1 : 0;
    int32_t *head = index->heads + (key != nullptr ? bucketof(index, key) : index->buckets);
    index->next[entry] = *head;
    *head = entry;
}

bool nameindexempty(const NAMEINDEX *index) {
    return index->keyed == 0 && index->heads[index->buckets] < 0;
}

NAMECURSOR nameindexfind(const NAMEINDEX *index, const char *name) {
    const int32_t keyed = index->keyed > 0 ? index->heads[bucketof(index, name)] : -1;
    return {index, keyed, index->heads[index->buckets]};
}

int32_t nameindexnext(NAMECURSOR *cursor) {
    const bool unkeyed =
        cursor->unkeyed >= 0 && (cursor->keyed < 0 || cursor->unkeyed < cursor->keyed);
    int32_t *chain = unkeyed ? &cursor->unkeyed : &cursor->keyed;
    const int32_t entry = *chain;
    if (entry >= 0)
        *chain = cursor->index->next[entry];
    return entry;
}

void nameindexfree(NAMEINDEX *index) {
    grelease(index->heads);
    grelease(index->next);
}
