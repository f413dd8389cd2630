// The record pool: records of one size, carved from large blocks called hunks. Many small
// records cost one allocation per hunk and are freed at once.
#pragma once

#include <cstdint>

// A node of a doubly linked list; every hunk and every free record begins with one.
struct MEMNODE {
    MEMNODE *next;
    MEMNODE *previous;
};

// A list header. `first` and `end` form the node before the first one, `end` and `last` the
// node after the last one. The first and the last node link to these, as does the header of
// an empty list.
struct MEMLIST {
    MEMNODE *first;
    MEMNODE *end; // always null
    MEMNODE *last;
};

// A pool. It must not be moved while in use: its lists point at themselves.
struct MEMHUNKHEADER {
    int32_t recordSize;     // in bytes
    int32_t recordsPerHunk; // records carved from each new hunk
    MEMLIST hunks;          // newest first
    MEMLIST freeRecords;
};

// Empties the pool's lists and allocates the first hunk. Returns the number of its records, or
// 0 when memory runs out or a size is invalid. The pool is usable in either case.
int32_t HUNK_init(MEMHUNKHEADER *pool, int32_t recordSize, int32_t recordsPerHunk);

// Adds a hunk of n records, halving n while memory is short. Returns the number of records
// added, or 0 on failure.
int32_t HUNK_allocate(MEMHUNKHEADER *pool, int32_t n);

// Returns a record of recordSize bytes, not cleared and aligned to 8. The pool owns it.
// Returns null when memory runs out.
void *HUNK_newrecord(MEMHUNKHEADER *pool);

// Frees every hunk and empties the lists; all records become invalid.
void HUNK_purge(MEMHUNKHEADER *pool);
