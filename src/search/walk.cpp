#include "search/walk.h"

#include "mem/galloc.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Fills the level with the identity of the directory open as `descriptor`, or AT_FDCWD.
bool identify(WALKLEVEL *level, int descriptor) {
    struct stat status = {};
    if (fstatat(descriptor, ".", &status, 0) != 0)
        return false;
    level->device = status.st_dev;
    level->inode = status.st_ino;
    return true;
}

bool same(const WALKLEVEL &a, const WALKLEVEL &b) {
    return a.device == b.device && a.inode == b.inode;
}

bool iscurrent(const WALKLEVEL &level) {
    WALKLEVEL here = {};
    return identify(&here, AT_FDCWD) && same(here, level);
}

WALKLEVEL *top(WALK *walk) {
    return walk->levels + walk->count - 1;
}

bool pushlevel(WALK *walk, const WALKLEVEL &level) {
    if (!growarray(walk->levels, walk->count, walk->capacity))
        return false;
    walk->levels[walk->count++] = level;
    return true;
}

// Whether the directory is the start or an ancestor of it.
bool abovestart(const WALK *walk, const WALKLEVEL &level) {
    bool found = false;
    WALKLEVEL here = {};
    WALKLEVEL below = {};
    int at = dup(walk->start.descriptor);
    // The root is its own parent.
    while (!found && at >= 0 && identify(&here, at) && !same(here, below)) {
        found = same(here, level);
        below = here;
        const int above = openat(at, "..", SGIPLACEFLAGS);
        close(at);
        at = above;
    }
    if (at >= 0)
        close(at);
    return found;
}

bool ownancestor(const WALK *walk, const WALKLEVEL &level) {
    for (int64_t i = walk->count - 1; i >= 0; --i) {
        if (same(walk->levels[i], level))
            return true;
    }
    return abovestart(walk, level);
}

// Enters the top level by its path from the start.
bool enteragain(WALK *walk) {
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
    return iscurrent(*top(walk));
}

// Enters the top level from one of its subdirectories.
bool goback(WALK *walk, bool linked) {
    return (!linked && chdir("..") == 0 && iscurrent(*top(walk))) || enteragain(walk);
}

// Drops the top level and enters the one below it. Levels that have vanished are dropped too.
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

// Enters a pending directory as a new top level. False, with nothing changed, when it cannot be
// entered, is a guarded link to an ancestor, or memory runs out.
bool enter(WALK *walk, const char *name, const PENDING &pending) {
    struct stat status = {};
    const bool linked = lstat(name, &status) != 0 || !S_ISDIR(status.st_mode);
    if (chdir(name) != 0)
        return false;
    WALKLEVEL level = {};
    level.linked = linked;
    level.nameAt = walk->path.length;
    level.nameLength = static_cast<int64_t>(strlen(name));
    level.tag = pending.tag;
    if (identify(&level, AT_FDCWD) && !(linked && pending.guarded && ownancestor(walk, level))) {
        walk->outOfMemory = !growappend(&walk->path, name) || !growappend(&walk->path, "/") ||
                            !pushlevel(walk, level);
        return !walk->outOfMemory;
    }
    if (!goback(walk, linked)) // the other pending directories cannot be reached either
        growcut(&walk->pending, top(walk)->nextPending);
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

// In `pending`, a directory is a PENDING record followed by its name and a terminator.
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
        const char *name = nullptr;
        if (top(walk)->nextPending >= walk->pending.length) {
            leave(walk);
        } else if (const PENDING pending = takepending(walk, &name); enter(walk, name, pending)) {
            goesOn = visitlevel(walk, visit, context);
        } else {
            goesOn = !walk->outOfMemory;
        }
    }
    return goesOn;
}

} // namespace

bool WALK_run(const char *directory, const char *base, WALKVISIT visit, void *context) {
    WALK walk = {};
    WALKLEVEL level = {};
    if (!SGIsaveplace(&walk.start))
        return false;
    const bool whole = directory != nullptr
                           ? chdir(directory) != 0 || WALK_run(nullptr, base, visit, context)
                           : identify(&level, AT_FDCWD) && growset(&walk.path, base) &&
                                 growreserve(&walk.pending, 1) && pushlevel(&walk, level) &&
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
    const auto *bytes = reinterpret_cast<const char *>(&pending);
    const bool kept = growappend(&walk->pending, bytes, sizeof pending) &&
                      growappend(&walk->pending, name, static_cast<int64_t>(strlen(name)) + 1);
    walk->outOfMemory = walk->outOfMemory || !kept;
    return kept;
}
