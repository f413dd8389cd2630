#include "search/relative.h"

#include "base/text.h"
#include "mem/galloc.h"

#include <algorithm>
#include <cstring>

namespace {

bool samechar(char a, char b) {
    return a == b || (isslash(a) && isslash(b));
}

// The text from three pieces; the last one ends at its terminator.
char *joined(const char *first, const char *firstEnd, const char *second, const char *secondEnd,
             const char *third) {
    const char *thirdEnd = third + strlen(third) + 1;
    char *result =
        gallocarray<char>((firstEnd - first) + (secondEnd - second) + (thirdEnd - third));
    if (result != nullptr) {
        char *end = std::copy(first, firstEnd, result);
        end = std::copy(second, secondEnd, end);
        std::copy(third, thirdEnd, end);
    }
    return result;
}

} // namespace

const char *lastcomponent(const char *name) {
    const char *at = name + strlen(name);
    while (at > name && !isslash(at[-1]))
        --at;
    return at;
}

char *BRAX_makerelative(const char *name, const char *relative) {
    const char *separatorEnd = lastcomponent(relative);
    const bool separated = separatorEnd > relative;
    const char *relativeEnd = separatorEnd + strlen(separatorEnd);
    const char *file = lastcomponent(name);
    if (file == name + 1) // the only separator comes first
        file = name;
    if (file != name)
        MakeRelative(&relative, relativeEnd, name, file);
    char *result = joined(name, file, relative, relativeEnd, file);
    if (separated)
        swap_slash(result, separatorEnd[-1]);
    return result;
}

void MakeRelative(const char **relative, const char *relativeEnd, const char *name,
                  const char *file) {
    if (*relative == relativeEnd)
        return;
    const char first = **relative;
    const char *at = name;
    bool drive = false;
    while (at < file && !samechar(*at, first)) {
        drive = drive || at[1] == ':';
        if (at[1] == 0 || at[1] == '.' || at[2] != '/')
            return;
        ++at;
    }
    const char *compared = drive ? at : name;
    const char *walked = *relative;
    while (walked < relativeEnd && compared < file && samechar(*walked, *compared)) {
        ++walked;
        ++compared;
    }
    if (compared > name && isslash(compared[-1]))
        *relative = walked;
}

void swap_slash(char *text, char separator) {
    if (text == nullptr)
        return;
    for (; *text != 0; ++text) {
        if (isslash(*text))
            *text = separator;
    }
}

const char *aftershared(const char *name, const char *root) {
    while (*name != 0 && *name == *root) {
        ++name;
        ++root;
    }
    return name;
}

char *BRAX_makerelativeAbs(const char *name, const char *root) {
    return galloctext(aftershared(name, root));
}

char *BRAX_makeunrelative(char separateDest, const char *dest, const char *relative,
                          const char *name) {
    if (separateDest == 0) {
        const char *found = BRAX_strstr(name, relative);
        if (found == nullptr)
            return galloctext(name);
        return joined(name, found, name, name, found + strlen(relative));
    }
    const char *destEnd = filepart(dest);
    const size_t length = destEnd > dest ? static_cast<size_t>(destEnd - dest) - 1 : 0;
    if (strlen(relative) == length + 1 && strncmp(dest, relative, length) == 0)
        return galloctext(name);
    // A destination whose only separator comes first has an empty directory part.
    return joined(dest, length > 0 ? destEnd : dest, dest, dest, filepart(name));
}
