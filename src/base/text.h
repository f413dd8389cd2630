// Characters, strings and file names.
//
// '/', '\' and ':' all separate the parts of a file name. Characters compare as signed
// 8-bit values on every platform, so bytes above 127 are negative. Without a stated size a
// destination has BRAXFIELDSIZE (2,048) bytes; a longer result is cut to 2,047 characters.
#pragma once

#include <cstddef>
#include <cstdint>

// Returns the character as a signed 8-bit number.
constexpr int charvalue(char c) {
    return static_cast<signed char>(c);
}

// Changes 'A' to 'Z' only, as the default locale does.
constexpr char lowerchar(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char upperchar(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

constexpr bool isdigitchar(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool ishexdigit(char c) {
    return isdigitchar(c) || (lowerchar(c) >= 'a' && lowerchar(c) <= 'f');
}

constexpr bool isletter(char c) {
    return lowerchar(c) >= 'a' && lowerchar(c) <= 'z';
}

// Returns the nearest 32-bit value.
constexpr int32_t toint32(int64_t value) {
    return value > INT32_MAX   ? INT32_MAX
           : value < INT32_MIN ? INT32_MIN
                               : static_cast<int32_t>(value);
}

// '/' or '\'.
constexpr bool isslash(char c) {
    return c == '/' || c == '\\';
}

// '/', '\' or ':'.
constexpr bool isseparator(char c) {
    return isslash(c) || c == ':';
}

// Copies a string into `size` bytes, terminator included. Returns false after cutting it.
bool copytext(char *destination, const char *source, size_t size);

// Copies the first `length` characters in the same way. The buffers may overlap.
bool copytext(char *destination, const char *source, size_t length, size_t size);

// Appends to a string in a buffer of `size` bytes. Returns false after cutting the source.
bool appendtext(char *destination, const char *source, size_t size);

void lowertext(char *text);
void uppertext(char *text);

// Compare without case, at most n (2,048) characters. Return 0 when equal, else the
// difference of the first unequal pair, lower-cased.
int32_t strnicmp(const char *a, const char *b, size_t n);
int32_t stricmp(const char *a, const char *b);

// Returns the first occurrence of the pattern, case ignored, or null. An empty pattern is
// never found.
const char *BRAX_strstr(const char *text, const char *pattern);

// Returns the part of the name after its last separator.
const char *filepart(const char *name);

// The following functions return their destination.

// Copies the name up to and including its last separator, if any.
char *BRAX_getpath(char *destination, const char *name);

// Copies the name after its last separator.
char *BRAX_getname(char *destination, const char *name);

// Copies the name and changes its extension by a rule (see BRAX_stringrule). A '+' rule
// extends it to at most 3 characters.
char *BRAX_changeext(char *destination, const char *name, const char *rule);

// Copies the name and changes its directory part by a rule; a null rule keeps it.
char *BRAX_changepath(char *destination, const char *name, const char *rule);

// Changes the base by a rule: "-x" prepends x, "+x" appends x, "=x" and anything else
// replace it, an empty rule keeps it. Appending drops leading characters of x, never of the
// base, until the result has at most `limit`. The destination may be the base.
char *BRAX_stringrule(const char *rule, const char *base, char *destination, int limit);

// Copies the name's last component and changes its extension by OPTextrule.
char *BRAX_convertname(char *destination, const char *name);

// Copies the name, '.', and the extension ("bak" when null).
char *BRAX_tempname(char *destination, const char *name, const char *extension);

// Returns the wall-clock time in milliseconds.
double BRAX_gettime();

// Returns whether the text has '*', '?' or '#' and is no option; false for null.
bool BRAX_iswildcards(const char *text);

// Returns whether the text has '*' or '?'.
bool BRAX_haswild(const char *text);

// Returns whether the text has the form of a directory: it ends in a separator, "." or
// "..", possibly before a closing double quote, or is a drive letter and ':'.
bool BRAX_ispath(const char *text);

// Classes of command-line names.
constexpr int BRAXNAMEPLAIN = 1;    // a file name without a directory
constexpr int BRAXNAMEABSOLUTE = 2; // begins with a drive, '/' or '\'
constexpr int BRAXNAMERELATIVE = 3; // holds '/' or '\'
constexpr int BRAXNAMEOPTION = 4;   // begins with '-' or '+', or is a bare extension (".obj")
int BRAX_typeofname(const char *name);

// Kept for programs that call it; does nothing.
void BRAX_flush();
