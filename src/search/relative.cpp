#include "search/relative.h"

#include "base/text.h"
#include "mem/galloc.h"

#include <cstddef>
#include <cstring>

namespace {

const char *lastslash(const char *text) {
    const char *at = text + strlen(text);
    while (at > text) {
        --at;
        if (isslash(*at))
            return at;
    }
    return nullptr;
}

bool samechar(char a, char b) {
    return a == b || (isslash(a) && isslash(b));
}

char *append(char *end, const char *text, const char *textEnd) {
    const auto length = static_cast<size_t>(textEnd - text);
    memcpy(end, text, length);
    end[length] = 0;
    return end + length;
}

// The text from three pieces; the last one runs to its terminator.
char *joined(const char *first, const char *firstEnd, const char *second, const char *secondEnd,
             const char *third) {
    const char *thirdEnd = third + strlen(third);
    char *result =
        gallocarray<char>((firstEnd - first) + (secondEnd - second) + (thirdEnd - third) + 10);
    if (result != nullptr) {
        char *end = append(result, first, firstEnd);
        end = append(end, second, secondEnd);
        append(end, third, thirdEnd);
    }
    return result;
}

} // namespace

char *BRAX_makerelative(const char *name, const char *relative) {
    const char *relativeEnd = relative + strlen(relative);
    const char *separator = lastslash(relative);
    const char *nameSlash = lastslash(name);
    const char *file = nameSlash == nullptr || nameSlash == name ? name : nameSlash + 1;
    if (file != name)
        MakeRelative(&relative, relativeEnd, name, file);
    char *result = joined(name, file, relative, relativeEnd, file);
    if (result != nullptr && separator != nullptr)
        swap_slash(result, *separator);
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

const char *behindshared(const char *name, const char *root) {
    while (*name != 0 && *name == *root) {
        ++name;
        ++root;
    }
    return name;
}

char *BRAX_makerelativeAbs(const char *name, const char *root) {
    return galloctext(behindshared(name, root));
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
    // A destination whose only separator comes first has a directory part of no characters,
    // and so loses that separator as well.
    return joined(dest, length > 0 ? destEnd : dest, dest, dest, filepart(name));
}
