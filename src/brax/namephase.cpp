// The name phase: fills the search list with the names of a batch and their destinations.
#include "base/fields.h"
#include "base/text.h"
#include "brax/builtin.h"
#include "brax/names.h"
#include "brax/run.h"

#include <cstring>

namespace {

constexpr int32_t noEntry = -1;

struct NAMEPHASE {
    SearchList *list;
    const char *position;
    int skip;          // number of names still exempt from the name rule
    bool pending;      // the previous name was a pair, which "=dest" may continue
    int32_t lastPlain; // entry for a destination without a source, or noEntry
    bool outOfMemory;
    char source[BRAXFIELDSIZE];
    char destination[BRAXFIELDSIZE];
    char previous[BRAXFIELDSIZE]; // source of the pending pair
};

// If the last name is a directory, makes it the path rule and removes it from the name list.
void takedestinationdirectory() {
    char source[BRAXFIELDSIZE];
    char destination[BRAXFIELDSIZE];
    const char *directory = nullptr;
    const char *position = namelist;
    while (const char *next = BRAX_nextnames(position, source, destination)) {
        if (BRAX_ispath(source))
            directory = position;
        else if (source[0] != '-')
            directory = nullptr;
        position = next;
    }
    if (directory == nullptr)
        return;
    const char *rest = BRAX_nextnames(directory, OPTpathrulebuf, destination);
    OPTpathrule = OPTpathrulebuf;
    OPTpathrule += *OPTpathrule == '-' ? 1 : 0;
    OPTpathrule += *OPTpathrule == '=' ? 1 : 0;
    memmove(namelist + (directory - namelist), rest, strlen(rest) + 1);
    if (OPTverbose > 5)
        BRAX_say("destdir '%s'\n", OPTpathrule);
}

void replacehardspaces(char *text) {
    for (; *text != 0; ++text)
        *text = tosoftspace(*text);
}

void add(NAMEPHASE *phase, const char *source, const char *destination) {
    if (!AddToSearchList(phase->list, source, destination))
        phase->outOfMemory = true;
}

// Gives a name without a destination the name rule as one. "=dest" after a pair is a further
// destination of the pair's source.
void completedestination(NAMEPHASE *phase) {
    if (phase->destination[0] != 0 || *OPTnamerule == 0 || phase->skip != 0)
        return;
    if (phase->source[0] != '=' || !phase->pending) {
        copytext(phase->destination, OPTnamerule, sizeof phase->destination);
        return;
    }
    phase->position -= Unclump(phase->source);
    copytext(phase->destination, phase->source + 1, sizeof phase->destination);
    copytext(phase->source, phase->previous, sizeof phase->source);
}

void addplain(NAMEPHASE *phase) {
    add(phase, phase->source, phase->source);
    if (BRAX_typeofname(phase->source) != BRAXNAMEOPTION)
        phase->lastPlain = phase->list->count - 1;
    phase->pending = false;
}

void addpair(NAMEPHASE *phase) {
    if (phase->source[0] == '=' && phase->pending) {
        add(phase, phase->previous, phase->source + 1);
        add(phase, phase->previous, phase->destination);
    } else {
        add(phase, phase->source, phase->destination);
        phase->pending = true;
        copytext(phase->previous, phase->source, sizeof phase->previous);
    }
    phase->lastPlain = noEntry;
}

// Gives a destination without a source to the last plain source before it.
void adddestination(NAMEPHASE *phase) {
    if (phase->lastPlain == noEntry) {
        if (OPTverbose > 2)
            BRAX_say("WARNING - No source filename match to <%s>, using as source and "
                     "destination.\n",
                     phase->destination);
        add(phase, phase->destination, phase->destination);
        return;
    }
    if (OPTnamecombine == 1) {
        char old[BRAXFIELDSIZE];
        RemoveFromSearchList(phase->list, phase->lastPlain, phase->source, old);
        add(phase, phase->source, phase->destination);
    } else if (UpdateSearchList(phase->list, phase->lastPlain, nullptr, phase->destination) == 0) {
        phase->outOfMemory = true;
    }
    phase->lastPlain = noEntry;
    phase->pending = false;
}

// Reads the next name; false at the end of the list.
bool readname(NAMEPHASE *phase) {
    const bool optionLike = BRAX_isoption(phase->position);
    const char *next = BRAX_nextnames(phase->position, phase->source, phase->destination);
    if (next == nullptr)
        return false;
    phase->position = next;
    replacehardspaces(phase->source);
    replacehardspaces(phase->destination);
    completedestination(phase);
    if (phase->source[0] != 0 && phase->destination[0] == 0)
        addplain(phase);
    else if (phase->source[0] != 0)
        addpair(phase);
    else if (phase->destination[0] != 0)
        adddestination(phase);
    if (phase->skip != 0 && !optionLike)
        --phase->skip;
    return true;
}

} // namespace

SearchList *BRAX_readnames() {
    takedestinationdirectory();
    NAMEPHASE phase = {
        CreateSearchList(), namelist, OPTskiprules, false, noEntry, false, "", "", ""};
    bool more = phase.list != nullptr;
    while (more)
        more = readname(&phase) && !phase.outOfMemory;
    if (phase.outOfMemory) {
        DestroySearchList(phase.list);
        return nullptr;
    }
    return phase.list;
}
