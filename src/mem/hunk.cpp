#include "mem/hunk.h"

#include "mem/galloc.h"

#include <new>

namespace {

constexpr int64_t alignment = 8;

// The nodes that a header forms are compared and stored, never dereferenced.
MEMNODE *front(MEMLIST *list) {
    return reinterpret_cast<MEMNODE *>(&list->first);
}

MEMNODE *back(MEMLIST *list) {
    return reinterpret_cast<MEMNODE *>(&list->end);
}

void clearlist(MEMLIST *list) {
    *list = {back(list), nullptr, front(list)};
}

void addfirst(MEMLIST *list, MEMNODE *node) {
    MEMNODE *next = list->first;
    *node = {next, front(list)};
    (next == back(list) ? list->last : next->previous) = node;
    list->first = node;
}

// Unlinks and returns the first node; null when the list is empty.
MEMNODE *takefirst(MEMLIST *list) {
    MEMNODE *node = list->first;
    if (node == back(list))
        return nullptr;
    MEMNODE *next = node->next;
    (next == back(list) ? list->last : next->previous) = front(list);
    list->first = next;
    return node;
}

// A slot holds the links of a free record before its own bytes.
int64_t slotbytes(const MEMHUNKHEADER *pool) {
    const int64_t bytes = pool->recordSize + static_cast<int64_t>(sizeof(MEMNODE));
    return (bytes + alignment - 1) / alignment * alignment;
}

} // namespace

int32_t HUNK_allocate(MEMHUNKHEADER *pool, int32_t n) {
    if (pool->recordSize < 0)
        return 0;
    const int64_t slot = slotbytes(pool);
    char *hunk = nullptr;
    for (; n > 0; n /= 2) {
        hunk = gallocarray<char>(slot * n + static_cast<int64_t>(sizeof(MEMNODE)));
        if (hunk != nullptr)
            break;
    }
    if (hunk == nullptr)
        return 0;
    addfirst(&pool->hunks, new (hunk) MEMNODE);
    char *record = hunk + sizeof(MEMNODE);
    for (int32_t i = 0; i < n; ++i, record += slot)
        addfirst(&pool->freeRecords, new (record) MEMNODE);
    return n;
}

int32_t HUNK_init(MEMHUNKHEADER *pool, int32_t recordSize, int32_t recordsPerHunk) {
    pool->recordSize = recordSize;
    pool->recordsPerHunk = recordsPerHunk;
    clearlist(&pool->hunks);
    clearlist(&pool->freeRecords);
    return HUNK_allocate(pool, recordsPerHunk);
}

void *HUNK_newrecord(MEMHUNKHEADER *pool) {
    MEMNODE *record = takefirst(&pool->freeRecords);
    if (record == nullptr && HUNK_allocate(pool, pool->recordsPerHunk) != 0)
        record = takefirst(&pool->freeRecords);
    return record;
}

void HUNK_purge(MEMHUNKHEADER *pool) {
    MEMNODE *hunk = takefirst(&pool->hunks);
    for (; hunk != nullptr; hunk = takefirst(&pool->hunks))
        gfree(hunk);
    clearlist(&pool->freeRecords);
}
