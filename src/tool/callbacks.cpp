#include "tool/callbacks.h"

#include "base/fields.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "symbols/options.h"

#include <cstring>

namespace {

// Searched in this order, each as a prefix of the typed text.
constexpr struct {
    const char *name;
    int type;
} typenames[] = {
    {"sgi", OBJTYPE_SGI}, {"n64", OBJTYPE_N64}, {"pc", OBJTYPE_PC},   {"gc", OBJTYPE_GC},
    {"psx", OBJTYPE_PSX}, {"ps2", OBJTYPE_PS2}, {"xbox", OBJTYPE_PC}, {"elf", OBJTYPE_SGI},
};

// Keywords and the options that they set to 1.
constexpr struct {
    const char *word;
    int *switches[3];
} switchwords[] = {
    {"all", {&OPTdefine, &OPTrefer, &OPTlinks}},
    {"append", {&OPTappend}},
    {"def", {&OPTdefine}},
    {"ref", {&OPTrefer}},
    {"html", {&OPThtml}},
    {"under", {&OPTunderscores}},
    {"links", {&OPTlinks}},
};

const char *endofname(const char *text) {
    return text + strcspn(text, " \t\n\v\f\r");
}

bool isword(const char *text, const char *word) {
    return strnicmp(text, word, strlen(word)) == 0;
}

// Copies a name into a text option. Prints a message instead when the name does not fit.
const char *textoption(char *option, const char *name, const char *label) {
    const char *end = endofname(name);
    const auto length = static_cast<size_t>(end - name);
    if (length >= BRAXFIELDSIZE) {
        toolsay("tolvik: ERROR: %s too long, ignoring '%.40s...'\n", label, name);
        return end;
    }
    copytext(option, name, length, BRAXFIELDSIZE);
    for (char *p = option; *p != 0; ++p)
        *p = tosoftspace(*p);
    return end;
}

// Appends a name to a list of `size` entries. Prints a message instead when the list is full.
const char *listoption(char **list, int *count, int size, const char *name, const char *label) {
    const char *end = endofname(name);
    char *copy = galloctext(name, end - name);
    for (char *p = copy; p != nullptr && *p != 0; ++p)
        *p = tosoftspace(*p);
    if (copy != nullptr && *count < size) {
        list[(*count)++] = copy;
        return end;
    }
    toolsay("tolvik: ERROR: out of %s space, ignoring '%.*s'\n", label,
            static_cast<int>(end - name), copy != nullptr ? copy : name);
    grelease(copy);
    return end;
}

const char *typeoption(const char *name) {
    for (const auto &entry : typenames) {
        if (isword(name, entry.name)) {
            OPTobjtype = entry.type;
            return name + strlen(entry.name);
        }
    }
    return nullptr;
}

const char *libraryoption(const char *name) {
    if (endofname(name) == name) {
        OPTlibnamefrompath = 1;
        OPTlibrary[0] = 0;
        return name;
    }
    return textoption(OPTlibrary, name, "library name");
}

const char *switchoption(const char *text) {
    for (const auto &entry : switchwords) {
        if (!isword(text, entry.word))
            continue;
        for (int *option : entry.switches) {
            if (option != nullptr)
                *option = 1;
        }
        return text + strlen(entry.word);
    }
    return nullptr;
}

} // namespace

void BRAX_reset() {
    OPTsourcelinkprefix[0] = 0;
    OPTlibrary[0] = 0;
}

const char *BRAX_opt(const char *text) {
    if (isdigitchar(*text))
        return BRAX_getopt(&OPTrecurselevel, text, "-<n>", 0, 100);
    if (const char *end = switchoption(text); end != nullptr)
        return end;
    switch (lowerchar(*text)) {
    case 'l':
        return isword(text, "lib") ? libraryoption(text + 3)
                                   : textoption(OPTsourcelinkprefix, text + 1, "link path");
    case 's':
        return listoption(OPTsymbols, &OPTnsymbols, MAXSYMBOLS, text + 1, "symbol");
    case 'f':
        return listoption(OPTfiles, &OPTnfiles, MAXFILES, text + 1, "file");
    case 't':
        return typeoption(text + 1);
    default:
        return nullptr;
    }
}
