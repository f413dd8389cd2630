#include "mem/arena.h"

#include "mem/galloc.h"

#include <sys/mman.h>

namespace {

// Blocks, the newest first, each larger than the one before: a small file touches little
// memory, a large one needs few blocks.
struct ARENABLOCK {
    ARENABLOCK *previous;
};
constexpr size_t largestBlockBytes = 32 * 1024 * 1024;
size_t nextBlockBytes = 32 * 1024;
ARENABLOCK *newest = nullptr;
char *next = nullptr;
size_t left = 0;

} // namespace

void adviseblock(void *block, size_t size) {
    constexpr size_t manyPages = 16 * 1024;
    constexpr size_t largePages = 4 * 1024 * 1024;
    constexpr uintptr_t pageMask = 4096 - 1;
    if (size < manyPages)
        return;
    const uintptr_t from = (reinterpret_cast<uintptr_t>(block) + pageMask) & ~pageMask;
    const uintptr_t to = (reinterpret_cast<uintptr_t>(block) + size) & ~pageMask;
    // Either is only advice: without it the pages come one by one as they are touched.
    if (size >= largePages)
        madvise(reinterpret_cast<void *>(from), to - from, MADV_HUGEPAGE);
#ifdef MADV_POPULATE_WRITE
    else
        madvise(reinterpret_cast<void *>(from), to - from, MADV_POPULATE_WRITE);
#endif
}

void *arenaalloc(size_t size) {
    size = (size + 7) & ~static_cast<size_t>(7);
    if (size > left) {
        const size_t needed = size + sizeof(ARENABLOCK);
        const size_t bytes = needed > nextBlockBytes ? needed : nextBlockBytes;
        auto *block = static_cast<ARENABLOCK *>(
            static_cast<void *>(gallocarray<char>(static_cast<int64_t>(bytes))));
        if (block == nullptr)
            return nullptr;
        adviseblock(block, bytes);
        if (nextBlockBytes < largestBlockBytes)
            nextBlockBytes *= 2;
        block->previous = newest;
        newest = block;
        next = reinterpret_cast<char *>(block + 1);
        left = bytes - sizeof(ARENABLOCK);
    }
    char *memory = next;
    next += size;
    left -= size;
    return memory;
}
