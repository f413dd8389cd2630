/* Equal-sized blocks with a free list threaded through them. */
#include "core/core.h"

void pool_open(struct pool *pool, bytes size, int count) {
    int i;
    pool->size = size < sizeof(void *) ? (bytes)sizeof(void *) : size;
    pool->first = heap_take(pool->size * (bytes)count);
    pool->free = NOTHING;
    for (i = count; i-- > 0;)
        pool_give(pool, pool->first + pool->size * (bytes)i);
}

void *pool_take(struct pool *pool) {
    void *block = pool->free;
    if (block) {
        pool->free = *(void **)block;
        memset(block, 0, pool->size);
    }
    return block;
}

void pool_give(struct pool *pool, void *block) {
    *(void **)block = pool->free;
    pool->free = block;
}

void pool_close(struct pool *pool) {
    heap_give(pool->first);
    pool->first = NOTHING;
    pool->free = NOTHING;
}
