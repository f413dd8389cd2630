// Range specifications: short texts that name a set of allowed values.
//
//   1..10      1 to 10               0..100+=5   0, 5, 10 up to 100
//   3,7,9      these three           !4..6       everything outside 4 to 6
//   5..        5 and above           ..5         0 (or the lower default) to 5
//   a..m       texts, case ignored   file2..file10   a numeric tail counts as a number
//
// An element is [!] minimum [".." maximum] ["+=" step]; a list of them, separated by ',',
// allows what any of them allows. An empty specification, an empty element, and ".." or
// "+=" alone allow everything; a ',' at the very end adds nothing. Every character counts,
// blanks too. Bounds in the wrong order are exchanged. The step is 1 unless it is numeric;
// a negative one counts as its absolute value.
//
// A part that is not numeric is a text bound and may hold wildcards (see wildstrcmp). A text
// beside an absent bound leaves the other side open. Malformed is an element with a number
// beside a text, with step 0, or longer than 1,023 characters: then nothing matches at all.
//
// The functions keep nothing and print nothing. Numbers beyond 32 bits saturate.
#pragma once

#include <cstdint>

constexpr int32_t RANGEUNLIMITED = 2147483647; // no upper end; as a count: endlessly many
constexpr int32_t RANGENOLOWER = -2147483647;  // no lower end; deliberately not the lowest number

// Size of the buffers for one element and for each of its parts, terminator included.
constexpr int RANGEPARTSIZE = 1024;

// One bound or test value.
struct RANGE {
    int32_t value;   // 0 when the bound is a text
    char text[2048]; // empty for a numeric bound
};

// 1 when the specification allows the value: the number, against text bounds the text (null
// or empty: the number is compared there too, a text bound counting as 0). A text over 2,047
// characters is allowed only where everything is.
int RANGE_match(const char *spec, const char *text, int32_t number);

// The smallest allowed value, but not below `lower`, which an element without minimum takes.
// 2147483647 when there is none, or when text bounds leave it unknown.
int32_t RANGE_min(const char *spec, int32_t lower);

// The largest allowed value, but not above `upper`, which an element without maximum takes.
// -2147483647 when there is none, or when text bounds leave it unknown.
int32_t RANGE_max(const char *spec, int32_t upper);

// 1 when no element is malformed. The values are not compared with the defaults.
int RANGE_check(const char *spec, int32_t lower, int32_t upper);

// The number of allowed values, at most the size of the span between the defaults.
int32_t RANGE_count(const char *spec, int32_t lower, int32_t upper);

// The allowed value closest to the number; direction negative prefers one at or below it,
// positive at or above, zero the nearer (the higher of two equally near). A later element
// replaces an earlier one's value only when it is strictly nearer and, for a direction that
// is not zero, lies further that way. Without a candidate 2147483647, or -2147483647 for a
// negative number.
int32_t RANGE_constrain(const char *spec, int32_t number, int32_t direction);

// What all of the above ask: evaluates the specification against a test value and returns
// whether it is allowed. Each output may be null: the number of malformed elements, the
// number of allowed values, the smallest and the largest, and the closest to the number,
// which holds the direction on entry.
int rangeparse(const char *spec, const char *text, int32_t number, int32_t *malformed,
               int32_t *count, int32_t *minimum, int32_t *maximum, int32_t *closest, int32_t lower,
               int32_t upper);

// 1 for an optional '-' followed by one or more decimal digits and nothing else.
int rangeisnumeric(const char *text);

// The value of such a text.
int32_t rangenumber(const char *text);

// The first ".." or "+=" of an element (without its '!'); null when there is none.
const char *rangefinddots(const char *element);
const char *rangefindplusequal(const char *element);

// Copy one part of an element (without its '!') into RANGEPARTSIZE bytes; an absent part is
// empty. False, with an empty part, when it does not fit.
bool rangeminstr(char *minimum, const char *element);
bool rangemaxstr(char *maximum, const char *element);
bool rangestepstr(char *step, const char *element);

// Exchanges two bounds, values and texts.
void rangeswap(RANGE *a, RANGE *b);

// -1, 0 or 1 by number when either text is empty, else wildstrcmp of the texts.
int32_t rangecompare(const RANGE *a, const RANGE *b);

// Compares a text with a bound, case ignored: negative, zero or positive. In the bound '*'
// stands for any run of characters, '?' for one and '#' for a digit; texts that both end in
// a number at the same place are compared by its value there.
// A '*' against a text over 2,047 characters needs memory during the call; without it the
// text sorts first.
int32_t wildstrcmp(const char *text, const char *bound);

// Copies one field of the option text into BRAXFIELDSIZE bytes and returns the position
// behind it. A blank ends the field; inside brackets or quotes blanks belong to it. `strip`
// takes off brackets around the whole field and ends the field with them; `stop` ends it
// also at ',' and in front of ".." and "+=". A field that is too long is refused
// (BRAX_refuse) and comes out empty.
const char *BRAX_getrangefield(char *output, const char *text, bool strip, bool stop);

// Reads the range behind an option's name into BRAXFIELDSIZE bytes and returns the position
// behind it. Unless upper is 2147483647, a malformed one ends the process with a message
// that names the label, and exit status 10.
const char *BRAX_getrangeopt(char *output, const char *text, const char *label, int32_t lower,
                             int32_t upper);
