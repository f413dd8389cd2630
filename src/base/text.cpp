#include "base/text.h"

#include "base/options.h"

#include <cstring>
#include <sys/time.h>

bool copytext(char *destination, const char *source, size_t length, size_t size) {
    const size_t copied = length < size ? length : size - 1;
    if (copied > 0) // the source may be null then
        memmove(destination, source, copied);
    destination[copied] = 0;
    return copied == length;
}

bool copytext(char *destination, const char *source, size_t size) {
    return copytext(destination, source, strlen(source), size);
}

bool appendtext(char *destination, const char *source, size_t size) {
    const size_t length = strlen(destination);
    return copytext(destination + length, source, size - length);
}

void lowertext(char *text) {
    for (; *text != 0; ++text)
        *text = lowerchar(*text);
}

void uppertext(char *text) {
    for (; *text != 0; ++text)
        *text = upperchar(*text);
}

int32_t strnicmp(const char *a, const char *b, size_t n) {
    for (; n > 0; --n, ++a, ++b) {
        const int difference = charvalue(lowerchar(*a)) - charvalue(lowerchar(*b));
        if (difference != 0 || *a == 0)
            return difference;
    }
    return 0;
}

int32_t stricmp(const char *a, const char *b) {
    return strnicmp(a, b, 2048);
}

const char *BRAX_strstr(const char *text, const char *pattern) {
    const size_t length = strlen(pattern);
    if (length == 0)
        return nullptr;
    const char first = lowerchar(*pattern);
    const char *end = text + strlen(text);
    for (; end - text >= static_cast<ptrdiff_t>(length); ++text) {
        if (lowerchar(*text) == first && strnicmp(text, pattern, length) == 0)
            return text;
    }
    return nullptr;
}

const char *filepart(const char *name) {
    const char *part = name + strlen(name);
    while (part > name && !isseparator(part[-1]))
        --part;
    return part;
}

char *BRAX_getpath(char *destination, const char *name) {
    copytext(destination, name, static_cast<size_t>(filepart(name) - name), BRAXFIELDSIZE);
    return destination;
}

char *BRAX_getname(char *destination, const char *name) {
    copytext(destination, filepart(name), BRAXFIELDSIZE);
    return destination;
}

char *BRAX_changeext(char *destination, const char *name, const char *rule) {
    char base[BRAXFIELDSIZE];
    char extension[BRAXFIELDSIZE] = "";
    copytext(base, name, sizeof base);
    if (const char *dot = strrchr(filepart(base), '.'); dot != nullptr) {
        copytext(extension, dot + 1, sizeof extension);
        base[dot - base] = 0;
    }
    BRAX_stringrule(rule, extension, extension, 3);
    copytext(destination, base, BRAXFIELDSIZE);
    if (extension[0] != 0)
        appendtext(destination, ".", BRAXFIELDSIZE);
    appendtext(destination, extension, BRAXFIELDSIZE);
    return destination;
}

namespace {

// Appends the separator unless the directory is empty, ends in one, or fills its buffer.
void endwithseparator(char *directory, char separator) {
    const size_t length = strlen(directory);
    if (length > 0 && !isseparator(directory[length - 1]) && length + 1 < BRAXFIELDSIZE) {
        directory[length] = separator;
        directory[length + 1] = 0;
    }
}

} // namespace

char *BRAX_changepath(char *destination, const char *name, const char *rule) {
    char directory[BRAXFIELDSIZE];
    char file[BRAXFIELDSIZE];
    char ownRule[BRAXFIELDSIZE];
    copytext(ownRule, rule != nullptr ? rule : "", sizeof ownRule);
    BRAX_getpath(directory, name);
    BRAX_getname(file, name);
    const size_t directoryLength = strlen(directory);
    char separator = '/';
    if (directoryLength > 0 && isslash(directory[directoryLength - 1]))
        separator = directory[directoryLength - 1];
    if (ownRule[0] == '-' && ownRule[1] != 0)
        endwithseparator(ownRule, separator);
    BRAX_stringrule(ownRule, directory, directory, 256);
    endwithseparator(directory, separator);
    copytext(destination, directory, BRAXFIELDSIZE);
    appendtext(destination, file, BRAXFIELDSIZE);
    return destination;
}

char *BRAX_stringrule(const char *rule, const char *base, char *destination, int limit) {
    char result[BRAXFIELDSIZE];
    if (rule[0] == '-') {
        copytext(result, rule + 1, sizeof result);
        appendtext(result, base, sizeof result);
    } else if (rule[0] == '+') {
        const char *suffix = rule + 1;
        const auto baseLength = static_cast<ptrdiff_t>(strlen(base));
        const auto suffixLength = static_cast<ptrdiff_t>(strlen(suffix));
        ptrdiff_t dropped = baseLength + suffixLength - limit;
        if (dropped > 0)
            suffix += dropped < suffixLength ? dropped : suffixLength;
        copytext(result, base, sizeof result);
        appendtext(result, suffix, sizeof result);
    } else {
        copytext(result, rule[0] == 0 ? base : rule[0] == '=' ? rule + 1 : rule, sizeof result);
    }
    copytext(destination, result, BRAXFIELDSIZE);
    return destination;
}

char *BRAX_convertname(char *destination, const char *name) {
    char last[BRAXFIELDSIZE];
    return BRAX_changeext(destination, BRAX_getname(last, name), OPTextrule);
}

char *BRAX_tempname(char *destination, const char *name, const char *extension) {
    copytext(destination, name, BRAXFIELDSIZE);
    appendtext(destination, ".", BRAXFIELDSIZE);
    appendtext(destination, extension != nullptr ? extension : "bak", BRAXFIELDSIZE);
    return destination;
}

double BRAX_gettime() {
    timeval now = {};
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_usec) / 1000.0;
}

bool BRAX_iswildcards(const char *text) {
    return text != nullptr && strpbrk(text, "*?#") != nullptr &&
           BRAX_typeofname(text) != BRAXNAMEOPTION;
}

bool BRAX_haswild(const char *text) {
    return strpbrk(text, "*?") != nullptr;
}

bool BRAX_ispath(const char *text) {
    const size_t length = strlen(text);
    if (length == 0 || text[0] == '-')
        return false;
    const char last = text[length - 1];
    const char before = length > 1 ? text[length - 2] : static_cast<char>(0);
    const bool quoted = last == '"' && (isseparator(before) || before == '.');
    if (!isseparator(last) && last != '.' && !quoted)
        return false;
    if (length == 1)
        return true;
    if (last == ':')
        return isletter(text[0]);
    if (last == '.')
        return isseparator(before) || before == '.';
    if (isslash(last))
        return true;
    const char third = length > 2 ? text[length - 3] : static_cast<char>(0);
    return isslash(before) || (before == '.' && (isseparator(third) || third == '.'));
}

int BRAX_typeofname(const char *name) {
    if (name[0] == 0 || name[1] == 0)
        return BRAXNAMEPLAIN;
    if (name[0] == '-' || name[0] == '+')
        return BRAXNAMEOPTION;
    if (name[0] == '.' && !isslash(name[1]) && name[1] != '.')
        return BRAXNAMEOPTION;
    if ((isletter(name[0]) && name[1] == ':') || isslash(name[0]))
        return BRAXNAMEABSOLUTE;
    return strpbrk(name, "\\/") != nullptr ? BRAXNAMERELATIVE : BRAXNAMEPLAIN;
}

void BRAX_flush() {}
