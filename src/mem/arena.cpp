#include "mem/arena.h"

#include "mem/galloc.h"

#include <algorithm>
#include <sys/mman.h>

// Each block is half as large again: a small input touches little memory, a large one needs few
// blocks.
struct ARENABLOCK {
    ARENABLOCK *previous;
    size_t nextBytes; // usual size of the block after it
};

namespace {

constexpr size_t firstBlockBytes = 32 * 1024;
// Blocks grow until they have this size or more. Virtual machines may be slow to get large pages.
constexpr size_t grownBlockBytes = 1024 * 1024;

bool addblock(ARENA *arena, size_t size) {
    const size_t usual = arena->newest != nullptr ? arena->newest->nextBytes : firstBlockBytes;
    const size_t bytes = std::max(size, usual);
    const size_t all = sizeof(ARENABLOCK) + bytes;
    auto *block = static_cast<ARENABLOCK *>(
        static_cast<void *>(gallocarray<char>(static_cast<int64_t>(all))));
    if (block == nullptr)
        return false;
    adviseblock(block, all);
    *block = {arena->newest, usual < grownBlockBytes ? usual + usual / 2 : usual};
    *arena = {block, reinterpret_cast<char *>(block + 1), bytes};
    return true;
}

} // namespace

void adviseblock(void *block, size_t size) {
    constexpr size_t largePage = 2 * 1024 * 1024;
    constexpr uintptr_t pageMask = 4096 - 1;
    if (size < firstBlockBytes)
        return;
    const uintptr_t from = (reinterpret_cast<uintptr_t>(block) + pageMask) & ~pageMask;
    const uintptr_t to = (reinterpret_cast<uintptr_t>(block) + size) & ~pageMask;
    const int advice = size >= largePage ? MADV_HUGEPAGE : MADV_POPULATE_WRITE;
    madvise(reinterpret_cast<void *>(from), to - from, advice);
}

void *arenaalloc(ARENA *arena, size_t size) {
    size = (size + 7) & ~static_cast<size_t>(7);
    if (size > arena->left && !addblock(arena, size))
        return nullptr;
    char *memory = arena->next;
    arena->next += size;
    arena->left -= size;
    return memory;
}

void arenafree(ARENA *arena) {
    while (arena->newest != nullptr) {
        ARENABLOCK *block = arena->newest;
        arena->newest = block->previous;
        gfree(block);
    }
    *arena = {};
}
