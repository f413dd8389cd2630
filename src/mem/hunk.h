// The record pool: fixed-size records carved from large blocks, called hunks, so that many
// small records cost one allocation per hunk and are all released at once.
#pragma once

#include <cstdint>

// A node of a doubly linked list; every hunk begins with one, and so does every free record.
struct MEMNODE {
    MEMNODE *next;
    MEMNODE *previous;
};

// A list header doubles as the nodes beyond both ends of its list: `first` and `end` read
// as the node in front of the first one, `end` and `last` as the node behind the last one.
// The first node's `previous` and the last node's `next` lead there, and an empty list's
// own words lead to each other.
struct MEMLIST {
    MEMNODE *first;
    MEMNODE *end; // always null
    MEMNODE *last;
};

// A pool. It must not be moved while in use: its lists point at themselves.
struct MEMHUNKHEADER {
    int32_t recordSize;     // bytes of one record
    int32_t recordsPerHunk; // records carved from each new hunk
    MEMLIST hunks;          // the hunks allocated, newest first
    MEMLIST freeRecords;    // the records not handed out
};

// Empties the pool's lists and allocates the first hunk. Returns the number of records
// obtained, 0 when memory runs out or a size is not sensible; the pool can be used and
// purged in either case.
int32_t HUNK_init(MEMHUNKHEADER *pool, int32_t recordSize, int32_t recordsPerHunk);

// Adds a hunk of n records or, when memory is short, of as many as halving n again and
// again leads to. Returns the number of records added, 0 on failure.
int32_t HUNK_allocate(MEMHUNKHEADER *pool, int32_t n);

// Hands out a record of recordSize bytes, aligned to 8 bytes, not cleared; null when memory
// runs out. The pool owns it and takes it back with all others.
void *HUNK_newrecord(MEMHUNKHEADER *pool);

// Releases every hunk and empties the lists; all records become invalid.
void HUNK_purge(MEMHUNKHEADER *pool);
