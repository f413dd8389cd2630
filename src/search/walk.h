// Walking through directories by changing into them: the visitor sees one directory at a
// time as the current one and says which of its directories to go on with.
//
// The walk neither recurses nor keeps a listing open while it is below a directory, so that
// its depth is bound by memory alone. It goes back up by ".." only when that leads to the
// very directory (device and inode) that it came from, else by going down again from the
// place where it started: a symbolic link on the way, or a directory that somebody moves
// meanwhile, cannot lead it astray. A directory that has vanished is left out together with
// what was still to be visited below it.
#pragma once

#include "base/growtext.h"
#include "search/directory.h"

#include <cstdint>
#include <sys/types.h>

// A directory that the walk stands in, or stands below.
struct WALKLEVEL {
    dev_t device;
    ino_t inode;
    bool linked;         // entered through a symbolic link
    int64_t nameAt;      // its name in the walk's path
    int64_t nameLength;  // 0 at the start
    int64_t pathLength;  // length of the path here, as the visitor left it
    int64_t pendingAt;   // where its directories still to be entered begin in `pending`
    int64_t nextPending; // the first of them that was not yet entered
    int64_t tag;         // see WALK
};

struct WALK {
    // For the visitor. The path is the base that the walk was given, then the names entered,
    // each followed by '/'; the visitor may put more behind it. The tag is the one that was
    // pending with the directory, 0 at the start.
    GROWTEXT path;
    int64_t tag;
    bool atStart;

    // Private.
    SGI_place start;
    WALKLEVEL *levels;
    int64_t count;
    int64_t room;
    GROWTEXT pending; // the names of all levels that are still to be entered
    bool outOfMemory;
};

// Visits the current directory; false ends the walk.
using WALKVISIT = bool (*)(WALK *walk, void *context);

// Visits the current directory and then, each after all below the one before it, those
// that the visits made pending. The current directory is the same afterwards. False when
// the walk could not be made whole because memory ran out or a visit ended it.
bool WALK_run(const char *base, WALKVISIT visit, void *context);

// Asks for the directory `name` of the current one to be visited, and for WALK's tag
// there. A guarded name is left out when it is a symbolic link to a directory on the way to
// it or above the start, below which the walk would meet itself. False when memory runs out.
bool WALK_pend(WALK *walk, const char *name, int64_t tag, bool guarded);
