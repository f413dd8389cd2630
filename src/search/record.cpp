#include "search/record.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/relative.h"
#include "wild/wild.h"

#include <cstring>

bool isdots(const char *name) {
    return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

bool holdswildcard(const char *text) {
    for (; *text != 0; ++text) {
        const int value = charvalue(*text);
        if (value == WILDcharstar || value == WILDcharquestion || value == WILDcharnumber)
            return true;
    }
    return false;
}

bool hookisexact() {
    char output[8] = "";
    return pathmatchfun(output, "A", "a", "") == 0;
}

bool setjoined(GROWTEXT *text, const char *directory, const char *name) {
    const size_t length = strlen(directory);
    const bool separated = length > 0 && isslash(directory[length - 1]);
    return growset(text, directory) && (separated || growappend(text, "/")) &&
           growappend(text, name);
}

bool passesfilter(SGI_finddata *data) {
    if (isdots(data->name))
        return false;
    const bool directory = (data->attrib & SGIATTRDIRECTORY) != 0;
    if (directory && OPTdirectory == 0)
        return false;
    if (OPTreadonly == 0 || OPTallfiles == 0)
        SGIfindfill(data);
    const bool readonly = (data->attrib & SGIATTRREADONLY) != 0;
    const bool special = (data->attrib & SGIATTRSYSTEM) != 0; // hidden and system both
    if (readonly && OPTreadonly == 0)
        return false;
    if (special && (OPTsystem == 0 || OPThidden == 0))
        return false;
    return OPTallfiles != 0 || directory || readonly || special;
}

bool hookmatches(FileInfo *entry, GROWTEXT *output, const char *name, const char *pattern,
                 const char *dest) {
    if (!growreserve(output, WILD_outputsize(name, dest))) {
        entry->incomplete = true;
        return false;
    }
    growcut(output, 0);
    if (pathmatchfun(output->text, name, pattern, dest) == 0)
        return false;
    output->length = static_cast<int64_t>(strlen(output->text));
    return true;
}

char *recordeddest(FileInfo *entry, const char *directory, const char *dest) {
    char *text = OPTstrippaths != 0 ? BRAX_makeunrelative(static_cast<char>(entry->separateDest),
                                                          entry->dest, directory, dest)
                                    : galloctext(dest);
    entry->incomplete = entry->incomplete || text == nullptr;
    return text;
}

bool recordfile(FileInfo *entry, SGI_finddata *data, char *source, char *dest) {
    Match match = {source, dest, 0, 0, 0};
    if (OPTmakesizelist != 0 || OPTmakedatelist != 0 || OPTmakeattriblist != 0) {
        SGIfindfill(data);
        match.size = OPTmakesizelist != 0 ? static_cast<uint32_t>(data->size) : 0;
        match.date = OPTmakedatelist != 0 ? static_cast<uint32_t>(data->time) : 0;
        match.attrib = OPTmakeattriblist != 0 ? BRAX_makeattrib(data) : uint8_t{0};
    }
    return AddMatch(entry, &match);
}
