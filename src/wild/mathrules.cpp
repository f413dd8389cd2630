#include "wild/mathrules.h"

#include "mem/galloc.h"

#include <cstring>

char **OPTmathrules;
int32_t nummathrules;

void WILD_addmathrule(const char *rule) {
    char *copy = galloctext(rule);
    char **larger = gallocarray<char *>(static_cast<int64_t>(nummathrules) + 1);
    if (copy == nullptr || larger == nullptr) {
        if (copy != nullptr)
            gfree(copy);
        if (larger != nullptr)
            gfree(larger);
        return;
    }
    if (OPTmathrules != nullptr) {
        memcpy(larger, OPTmathrules, static_cast<size_t>(nummathrules) * sizeof(char *));
        gfree(OPTmathrules);
    }
    larger[nummathrules++] = copy;
    OPTmathrules = larger;
}

void WILD_deletemathrules() {
    for (int32_t i = 0; i < nummathrules; ++i)
        gfree(OPTmathrules[i]);
    if (OPTmathrules != nullptr)
        gfree(OPTmathrules);
    OPTmathrules = nullptr;
    nummathrules = 0;
}

int32_t WILD_applymathrules(char **, int32_t, int32_t) {
    return WILDNORULE;
}
