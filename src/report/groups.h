// Groups of files that reach each other, found by Tarjan's algorithm. A group's targets have lower
// numbers. Real products have one large group and many small ones.
#pragma once

#include "report/graph.h"

// The groups and the references between them. Most targets that another target reaches are left
// out, so that chains and ladders have one target each.
struct GROUPS {
    int32_t count;
    int32_t height;   // no path has more files
    int64_t *size;    // sum of a group's files
    int32_t *groupof; // each file's group; -1 for files that are not reached
    int32_t *members; // files, group by group
    int32_t *first;   // group i has the targets first[i] to last[i] - 1, the highest first
    int32_t *last;
    int32_t *firstmember; // count + 1
    int32_t *target;
};

// Finds the groups that the `count` files reach, for freegroups. False, with nothing allocated,
// when memory runs out.
bool findgroups(GROUPS *groups, const GRAPH &graph, const int32_t *files, int32_t count);

void freegroups(GROUPS *groups);
