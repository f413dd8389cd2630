// range: short texts that name sets of values. Read this file first: a specification tests a
// number or a string. range.cpp evaluates it, rangeparts.cpp cuts it, rangetext.cpp compares
// strings. ranger.h steps through floating-point values instead.
//
//   1..10      1 to 10               0..100+=5   0, 5, 10 up to 100
//   3,7,9      these three           !4..6       everything outside 4 to 6
//   5..        5 and above           ..5         0 (or the lower default) to 5
//   a..m       strings, no case      file2..file10   a numeric tail counts as a number
//
// A specification is a list of elements separated by ','; a value that one element allows
// is allowed. An element is [!] minimum [".." maximum] ["+=" step]. An empty specification,
// an empty element, and ".." or "+=" alone allow everything; a ',' at the very end adds
// nothing. Blanks are ordinary characters. Bounds in the wrong order are exchanged. The step
// is 1 unless numeric; its sign is ignored.
//
// A part that is not numeric is a text bound and may have wildcards (see wildstrcmp). When
// the other bound is missing its side is open. An element is malformed when it has a number beside
// a text, step 0, or more than 1,023 characters. Then no value is allowed at all.
//
// The functions print nothing and change no global state. Numbers saturate at 32 bits.
#pragma once

#include <cstdint>

constexpr int32_t RANGEUNLIMITED = 2147483647; // no upper end; as a count: unlimited
constexpr int32_t RANGENOLOWER = -2147483647;  // no lower end; not the lowest number

// Size of a buffer for one element or one of its parts, terminator included.
constexpr int RANGEPARTSIZE = 1024;

// One bound or test value.
struct RANGE {
    int32_t value;   // 0 when the bound is a text
    char text[2048]; // empty for a numeric bound
};

// Returns 1 when the value is allowed, else 0. Bounds test the number, text bounds the text.
// When the text is null or empty, text bounds test the number and count as 0. A text over
// 2,047 characters is allowed only by an element that allows everything.
int RANGE_match(const char *spec, const char *text, int32_t number);

// Returns the smallest allowed value, at least `lower`, the default of a missing minimum.
// Returns 2147483647 when no value is allowed or text bounds leave it unknown.
int32_t RANGE_min(const char *spec, int32_t lower);

// Returns the largest allowed value, at most `upper`, the default of a missing maximum.
// Returns -2147483647 when no value is allowed or text bounds leave it unknown.
int32_t RANGE_max(const char *spec, int32_t upper);

// Returns 1 when no element is malformed, else 0. Bounds beyond the defaults are allowed.
int RANGE_check(const char *spec, int32_t lower, int32_t upper);

// Returns the number of allowed values, at most those from `lower` to `upper`.
int32_t RANGE_count(const char *spec, int32_t lower, int32_t upper);

// Returns the allowed value closest to the number. A negative direction prefers one at or
// below it, a positive one at or above it, zero the nearer (the higher of two as near). A
// later element's value replaces an earlier one only if it is nearer and, with a direction
// other than zero, further that way. Without a candidate returns
// 2147483647, or -2147483647 for a negative number.
int32_t RANGE_constrain(const char *spec, int32_t number, int32_t direction);

// Evaluates a specification for all functions above and returns RANGE_match's result. Each
// output may be null. *malformed is the number of malformed elements, *count the number of
// allowed values, then the smallest, the largest, and the closest to the number.
// *closest holds the direction on entry.
int rangeparse(const char *spec, const char *text, int32_t number, int32_t *malformed,
               int32_t *count, int32_t *minimum, int32_t *maximum, int32_t *closest, int32_t lower,
               int32_t upper);

// Returns 1 for an optional '-' with decimal digits and nothing else, else 0.
int rangeisnumeric(const char *text);

// Returns the value of such a text.
int32_t rangenumber(const char *text);

// Return the first ".." or "+=" of an element (without its '!'), or null.
const char *rangefinddots(const char *element);
const char *rangefindplusequal(const char *element);

// Copy one part of an element (without its '!') into RANGEPARTSIZE bytes; a missing part is
// empty. Return false, with an empty part, when it does not fit.
bool rangeminstr(char *minimum, const char *element);
bool rangemaxstr(char *maximum, const char *element);
bool rangestepstr(char *step, const char *element);

// Exchanges two bounds, values and texts.
void rangeswap(RANGE *a, RANGE *b);

// Returns wildstrcmp of two texts; when either is empty, -1, 0 or 1 by number.
int32_t rangecompare(const RANGE *a, const RANGE *b);

// Compares a text with a bound, case ignored, as strcmp does. In the bound '*' matches any
// run of characters, '?' one character and '#' one digit. When both texts end in a number at
// the same place, its value decides there. A '*' against a text over 2,047 characters
// allocates memory; when that fails the text sorts first.
int32_t wildstrcmp(const char *text, const char *bound);

// Copies one field of the option text into BRAXFIELDSIZE bytes and returns the position
// after it. A blank outside brackets and quotes ends the field. `strip` removes brackets
// around the field, which then end it; `stop` also ends it before ',', ".." and "+=". A field
// that is too long is refused (BRAX_refuse) and its copy is empty.
const char *BRAX_getrangefield(char *output, const char *text, bool strip, bool stop);

// Copies the range after an option's name into BRAXFIELDSIZE bytes and returns the position
// after it. Unless upper is 2147483647, a malformed range ends the process with a message
// that names the label, and exit status 10.
const char *BRAX_getrangeopt(char *output, const char *text, const char *label, int32_t lower,
                             int32_t upper);
