/* First-fit heap in one arena. A block's header holds its size and whether it is taken. */
#include "core/core.h"

enum { ARENA_BYTES = 256 * 1024, ALIGNMENT = 8 };

struct header {
    bytes size;
    u32 taken;
};

static u8 arena[ARENA_BYTES] __attribute__((aligned(8)));
static bytes used;

static struct header *next_block(struct header *block) {
    return (struct header *)((u8 *)(block + 1) + block->size);
}

static int at_end(const struct header *block) {
    return (const u8 *)block >= arena + ARENA_BYTES;
}

static struct header *first_block(void) {
    struct header *first = (struct header *)arena;
    if (first->size == 0) {
        memset(first, 0, sizeof *first);
        first->size = ARENA_BYTES - sizeof *first;
    }
    return first;
}

static void split(struct header *block, bytes size) {
    bytes rest = block->size - size;
    if (rest <= sizeof *block)
        return;
    block->size = size;
    next_block(block)->size = rest - sizeof *block;
    next_block(block)->taken = 0;
}

void *heap_take(bytes size) {
    struct header *block;
    size = (size + ALIGNMENT - 1) & ~(bytes)(ALIGNMENT - 1);
    for (block = first_block(); !at_end(block); block = next_block(block)) {
        if (block->taken || block->size < size)
            continue;
        split(block, size);
        block->taken = 1;
        used += block->size;
        return block + 1;
    }
    panic("out of memory");
    return NOTHING;
}

void heap_give(void *block) {
    struct header *header = (struct header *)block - 1;
    panic_unless(header->taken == 1, "block released twice");
    header->taken = 0;
    used -= header->size;
}

int heap_check(void) {
    struct header *block;
    bytes sum = 0;
    for (block = first_block(); !at_end(block); block = next_block(block))
        if (block->taken)
            sum += block->size;
    return sum == used;
}
