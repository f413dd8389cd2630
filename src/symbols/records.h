// The single records of a symbol store. Their public functions are in store.h.
#pragma once

#include "symbols/options.h"
#include "symbols/store.h"

// Takes the underscores off both ends of a name, unless OPTunderscores is set. It is called for
// every line of a symbol file.
inline void symstrip(const char **name, size_t *length) {
    if (OPTunderscores != 0)
        return;
    for (; *length > 0 && **name == '_'; ++*name)
        --*length;
    while (*length > 0 && (*name)[*length - 1] == '_')
        --*length;
}

// Frees the blocks that are not null.
void discardblocks(void *a, void *b, void *c = nullptr);
