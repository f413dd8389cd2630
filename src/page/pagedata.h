// The data of a page: a store, or a part of it, as JSON. docs/page.md describes the form.
#pragma once

#include "mem/hash.h"
#include "report/output.h"

// Patterns of wild/wild.h. `matched` is set for each that selected an object, in any of the stores
// that used them.
struct PATTERNS {
    const char **texts;
    bool *matched;
    int count;
};

struct PAGEDATA {
    const TVKINFO *info;
    int64_t objects; // of the whole store
    int64_t kept;    // objects in the page
    int64_t entries; // definitions and references of these
    int64_t symbolCount;
    _tagsymbol **symbols; // the whole store's; `firstref` is -1 for those not in the page
    HASHTABLE *libraries; // numbers of the page's libraries
};

// Prepares a store for putpagedata, to be freed with freepagedata. Without patterns it keeps all
// objects; else the objects that the matching symbols link in, and the objects whose name or
// library matches with all that they link in. Kept symbols have their defining object in the page.
// False when memory runs out.
bool makepagedata(PAGEDATA *data, const TVKINFO *info, PATTERNS *symbols, PATTERNS *files);

void freepagedata(PAGEDATA *data);

// Writes the data; allocates nothing. `sourcePrefix` may be null.
void putpagedata(OUTPUT *out, const PAGEDATA *data, const char *title, const char *sourcePrefix);
