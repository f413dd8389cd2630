// Walks directories by changing into them. A visitor is called in each directory and chooses
// the subdirectories to visit next.
//
// The walk does not recurse and keeps no listing open below a directory, so only memory limits
// its depth. It returns through ".." only if that has the device and inode of the parent
// level. Otherwise it enters the parent from the start again, because after a symbolic link, or
// when a directory was moved, ".." is another directory. A directory that has vanished is skipped
// with all that was pending below it.
#pragma once

#include "base/growtext.h"
#include "search/directory.h"

#include <cstdint>
#include <sys/types.h>

// A directory on the path to the current one.
struct WALKLEVEL {
    dev_t device;
    ino_t inode;
    bool linked;         // entered through a symbolic link
    int64_t nameAt;      // its name in the walk's path
    int64_t nameLength;  // 0 at the start
    int64_t pathLength;  // length of the path after the visit
    int64_t pendingAt;   // offset of its subdirectories in `pending`
    int64_t nextPending; // offset of the first one not yet entered
    int64_t tag;         // see WALK
};

struct WALK {
    // For the visitor. The path is the walk's base, then each name entered with a '/' after it;
    // the visitor may append to it. The tag is the one given to WALK_pend, 0 at the start.
    GROWTEXT path;
    int64_t tag;
    bool atStart;

    // Private.
    SGI_place start;
    WALKLEVEL *levels;
    int64_t count;
    int64_t capacity;
    GROWTEXT pending; // the subdirectories of all levels not yet entered
    bool outOfMemory;
};

// Visits the current directory; false ends the walk.
using WALKVISIT = bool (*)(WALK *walk, void *context);

// Visits the directory, then its pending subdirectories, each with all below it before the next
// one. A null directory is the current one; one that cannot be entered is skipped. Restores the
// current directory. False when memory ran out or a visit ended the walk.
bool WALK_run(const char *directory, const char *base, WALKVISIT visit, void *context);

// Makes the subdirectory `name` of the current directory pending, with a tag for its visit. A
// guarded name is skipped if it is a symbolic link to an ancestor, which would make the walk
// endless. False when memory runs out.
bool WALK_pend(WALK *walk, const char *name, int64_t tag, bool guarded);
