// Text and file-name helpers that every room above shares.
//
// '/', '\' and ':' all separate the parts of a file name here. Characters are compared as
// signed 8-bit values on every platform, so bytes above 127 are negative. Destination
// buffers hold BRAXFIELDSIZE (2,048) bytes unless a size is stated; a longer result is cut
// to 2,047 characters.
#pragma once

#include <cstddef>
#include <cstdint>

// The character's value as a signed 8-bit number.
constexpr int charvalue(char c) {
    return static_cast<signed char>(c);
}

// The lower-case form in the default locale: 'A' to 'Z' only.
constexpr char lowerchar(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char upperchar(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

constexpr bool isdigitchar(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isletter(char c) {
    return lowerchar(c) >= 'a' && lowerchar(c) <= 'z';
}

// The nearest value that 32 bits hold.
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

// Copies the text into `size` bytes, terminator included, and returns false when it had to
// be cut.
bool copytext(char *destination, const char *source, size_t size);

// The same for the first `length` characters of the source.
bool copytext(char *destination, const char *source, size_t length, size_t size);

// Puts the source behind the text in the destination of `size` bytes; false when it had to
// be cut.
bool appendtext(char *destination, const char *source, size_t size);

void lowertext(char *text);
void uppertext(char *text);

// Compare without regard to case, at most n (2,048) characters: 0 when equal so far, else
// the difference of the first unequal pair, lower-cased.
int32_t strnicmp(const char *a, const char *b, size_t n);
int32_t stricmp(const char *a, const char *b);

// First occurrence of the pattern in the text, case ignored; null when there is none. An
// empty pattern is not found.
const char *BRAX_strstr(const char *text, const char *pattern);

// The start of the name's file part: behind its last separator.
const char *filepart(const char *name);

// The name up to and including its last separator; empty when it has none. Returns the
// destination, as all of the following do.
char *BRAX_getpath(char *destination, const char *name);

// The name behind its last separator.
char *BRAX_getname(char *destination, const char *name);

// The name with its extension changed by a rule (see BRAX_stringrule). Extensions built
// with '+' are kept at 3 characters.
char *BRAX_changeext(char *destination, const char *name, const char *rule);

// The name with its directory part changed by a rule; a null rule keeps it.
char *BRAX_changepath(char *destination, const char *name, const char *rule);

// The base changed by a rule: "-x" puts x in front, "+x" appends x (less so many of its
// leading characters that both together pass `limit` characters; the base is never
// shortened), "=x" and anything else replace it, an empty rule keeps it. The destination
// may be the base.
char *BRAX_stringrule(const char *rule, const char *base, char *destination, int limit);

// The name's last component with the rule OPTextrule applied to its extension.
char *BRAX_convertname(char *destination, const char *name);

// The name, '.', and the extension ("bak" when null).
char *BRAX_tempname(char *destination, const char *name, const char *extension);

// Wall-clock time in milliseconds.
double BRAX_gettime();

// Whether the text holds '*', '?' or '#' and is not option-like; false for null.
bool BRAX_iswildcards(const char *text);

// Whether the text holds '*' or '?'.
bool BRAX_haswild(const char *text);

// Whether the text names a directory by its form: it ends in a separator or in a lone ".",
// "..", possibly before a closing double quote. A drive letter with ':' is one too.
bool BRAX_ispath(const char *text);

// Classes of command-line names.
constexpr int BRAXNAMEPLAIN = 1;    // a file name without a directory
constexpr int BRAXNAMEABSOLUTE = 2; // begins with a drive, '/' or '\'
constexpr int BRAXNAMERELATIVE = 3; // holds '/' or '\'
constexpr int BRAXNAMEOPTION = 4;   // begins with '-' or '+', or is a bare extension (".obj")
int BRAX_typeofname(const char *name);

// Kept for programs that call it; does nothing.
void BRAX_flush();
