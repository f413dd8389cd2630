#include "search/walk.h"

#include "mem/galloc.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool identify(WALKLEVEL *level) {
    struct stat status = {};
    if (stat(".", &status) != 0)
        return false;
    level->device = status.st_dev;
    level->inode = status.st_ino;
    return true;
}

bool same(const WALKLEVEL &a, const WALKLEVEL &b) {
    return a.device == b.device && a.inode == b.inode;
}

bool standsin(const WALKLEVEL &level) {
    WALKLEVEL here = {};
    return identify(&here) && same(here, level);
}

WALKLEVEL *top(WALK *walk) {
    return walk->levels + walk->count - 1;
}

bool pushlevel(WALK *walk, const WALKLEVEL &level) {
    if (!growarray(walk->levels, walk->count, walk->room))
        return false;
    walk->levels[walk->count++] = level;
    return true;
}

// Whether the directory lies above the start, or is it.
bool abovestart(const WALK *walk, const WALKLEVEL &level) {
    int at = dup(walk->start.descriptor);
    WALKLEVEL seen = {};
    for (bool first = true; at >= 0; first = false) {
        struct stat status = {};
        if (fstat(at, &status) != 0)
            break;
        WALKLEVEL now = {};
        now.device = status.st_dev;
        now.inode = status.st_ino;
        if (same(now, level)) {
            close(at);
            return true;
        }
        if (!first && same(now, seen))
            break; // the root is its own parent
        seen = now;
        const int above = openat(at, "..", SGIPLACEFLAGS);
        close(at);
        at = above;
    }
    if (at >= 0)
        close(at);
    return false;
}

bool ownancestor(const WALK *walk, const WALKLEVEL &level) {
    for (int64_t i = walk->count - 1; i >= 0; --i) {
        if (same(walk->levels[i], level))
            return true;
    }
    return abovestart(walk, level);
}

// Goes to the level that is the top one now, from wherever the process is.
bool comedown(WALK *walk) {
    if (!SGIreturn(&walk->start))
        return false;
    for (int64_t i = 1; i < walk->count; ++i) {
        char *end = walk->path.text + walk->levels[i].nameAt + walk->levels[i].nameLength;
        *end = 0;
        const bool entered = chdir(walk->path.text + walk->levels[i].nameAt) == 0;
        *end = '/';
        if (!entered)
            return false;
    }
    return standsin(*top(walk));
}

// Goes back to the top level from a directory of its own.
bool goback(WALK *walk, bool linked) {
    return (!linked && chdir("..") == 0 && standsin(*top(walk))) || comedown(walk);
}

// Drops the top level and goes back to the one below it; as often as that one is not there
// any more.
void leave(WALK *walk) {
    bool back = false;
    while (!back && walk->count > 0) {
        const bool linked = top(walk)->linked;
        growcut(&walk->pending, top(walk)->pendingAt);
        --walk->count;
        if (walk->count > 0) {
            back = goback(walk, linked);
            growcut(&walk->path, top(walk)->pathLength);
        }
    }
}

struct PENDING {
    int64_t tag;
    bool guarded;
};

// Enters a pending directory as a new top level; false when it cannot be entered or must
// not be, with everything as before.
bool enter(WALK *walk, const char *name, const PENDING &pending) {
    struct stat status = {};
    const bool linked = lstat(name, &status) != 0 || !S_ISDIR(status.st_mode);
    if (chdir(name) != 0)
        return false;
    WALKLEVEL level = {};
    const int64_t pathLength = walk->path.length;
    level.linked = linked;
    level.nameAt = pathLength;
    level.nameLength = static_cast<int64_t>(strlen(name));
    level.tag = pending.tag;
    if (identify(&level) && !(linked && pending.guarded && ownancestor(walk, level))) {
        walk->outOfMemory = !growappend(&walk->path, name) || !growappend(&walk->path, "/") ||
                            !pushlevel(walk, level);
        return !walk->outOfMemory;
    }
    if (!goback(walk, linked)) {
        // What is pending here cannot be reached any more.
        growcut(&walk->pending, top(walk)->nextPending);
    }
    return false;
}

bool visitlevel(WALK *walk, WALKVISIT visit, void *context) {
    WALKLEVEL *level = top(walk);
    level->pendingAt = level->nextPending = walk->pending.length;
    walk->tag = level->tag;
    walk->atStart = walk->count == 1;
    const bool goesOn = visit(walk, context) && !walk->outOfMemory;
    level->pathLength = walk->path.length;
    return goesOn;
}

// A pending directory is kept as its tag and guard, then its name with the terminator.
PENDING takepending(WALK *walk, const char **name) {
    PENDING pending = {};
    const char *at = walk->pending.text + top(walk)->nextPending;
    memcpy(&pending, at, sizeof pending);
    *name = at + sizeof pending;
    top(walk)->nextPending += static_cast<int64_t>(sizeof pending + strlen(*name) + 1);
    return pending;
}

bool runlevels(WALK *walk, WALKVISIT visit, void *context) {
    bool goesOn = visitlevel(walk, visit, context);
    while (goesOn && walk->count > 0) {
        if (top(walk)->nextPending >= walk->pending.length) {
            leave(walk);
            continue;
        }
        const char *name = nullptr;
        const PENDING pending = takepending(walk, &name);
        if (enter(walk, name, pending))
            goesOn = visitlevel(walk, visit, context);
        else
            goesOn = !walk->outOfMemory;
    }
    return goesOn;
}

} // namespace

bool WALK_run(const char *base, WALKVISIT visit, void *context) {
    WALK walk = {};
    if (!SGIsaveplace(&walk.start))
        return false;
    WALKLEVEL level = {};
    const bool whole = identify(&level) && growset(&walk.path, base) &&
                       growroom(&walk.pending, 1) && pushlevel(&walk, level) &&
                       runlevels(&walk, visit, context);
    SGIreturn(&walk.start);
    SGIforgetplace(&walk.start);
    growfree(&walk.path);
    growfree(&walk.pending);
    grelease(walk.levels);
    return whole;
}

bool WALK_pend(WALK *walk, const char *name, int64_t tag, bool guarded) {
    const PENDING pending = {tag, guarded};
    char bytes[sizeof pending];
    memcpy(bytes, &pending, sizeof pending);
    const bool kept = growappend(&walk->pending, bytes, sizeof bytes) &&
                      growappend(&walk->pending, name, static_cast<int64_t>(strlen(name)) + 1);
    walk->outOfMemory = walk->outOfMemory || !kept;
    return kept;
}
