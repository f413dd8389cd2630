/* First-fit heap in one arena; a block's header holds its size and whether it is taken. */
#include "core/core.h"

enum { ARENA_BYTES = 256 * 1024, ALIGNMENT = 8 };

struct header {
    bytes size;
    u32 taken;
};

static u8 arena[ARENA_BYTES] __attribute__((aligned(8)));
static bytes used;

static struct header *first_block(void) {
    return (struct header *)arena;
}

static struct header *next_block(struct header *block) {
    return (struct header *)((u8 *)(block + 1) + block->size);
}

static int at_end(const struct header *block) {
    return (const u8 *)block >= arena + ARENA_BYTES;
}

void heap_reset(void) {
    memset(arena, 0, sizeof(struct header));
    first_block()->size = ARENA_BYTES - sizeof(struct header);
    used = 0;
}

static void split(struct header *block, bytes size) {
    bytes rest = block->size - size;
    if (rest <= sizeof(struct header))
        return;
    block->size = size;
    next_block(block)->size = rest - sizeof(struct header);
    next_block(block)->taken = 0;
}

static void join(struct header *block) {
    while (!at_end(next_block(block)) && !next_block(block)->taken)
        block->size += sizeof(struct header) + next_block(block)->size;
}

void *heap_take(bytes size) {
    struct header *block;
    if (first_block()->size == 0)
        heap_reset();
    size = (size + ALIGNMENT - 1) & ~(bytes)(ALIGNMENT - 1);
    for (block = first_block(); !at_end(block); block = next_block(block)) {
        if (block->taken)
            continue;
        join(block);
        if (block->size >= size) {
            split(block, size);
            block->taken = 1;
            used += block->size;
            return block + 1;
        }
    }
    panic("out of memory");
    return NOTHING;
}

void heap_give(void *block) {
    struct header *header = (struct header *)block - 1;
    if (!block)
        return;
    panic_unless(header->taken == 1, "block given back twice");
    header->taken = 0;
    used -= header->size;
}

bytes heap_used(void) {
    return used;
}

int heap_check(void) {
    struct header *block;
    bytes sum = 0;
    for (block = first_block(); !at_end(block); block = next_block(block))
        if (block->taken)
            sum += block->size;
    return sum == used;
}
