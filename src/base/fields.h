// Reads fields and numbers out of the option text. A field is an option word, a name, a
// destination or a value; brackets and quotes protect what they enclose.
//
// A program's own option callback uses the same functions, so all options behave alike.
// Every buffer for a field holds BRAXFIELDSIZE (2,048) bytes. A longer field is refused
// (BRAX_refuse) and its copy is empty.
#pragma once

#include <cstdint>

// Returns whether the character separates fields: its signed value is at most 32 and it is
// not the hard space. Bytes 128 to 255 are blanks too.
bool isblankchar(char c);

// Returns whether the character opens an enclosed part: ( { [ " ` '
bool islim(char c);

// Returns the character that closes such a part; other characters stay as they are.
char limtodelim(char c);

// Returns a blank for the hard space; other characters stay as they are.
char tosoftspace(char c);

// Copies the field at `source` and returns the position after it. `strip` removes one pair
// of limiters around the whole field; `keep` makes ',' and '=' ordinary. A null destination
// receives nothing and allows a field of any length.
const char *BRAX_getfield(char *destination, const char *source, bool strip, bool keep);

// Works like BRAX_getfield, but bytes above 127 belong to the field.
const char *BRAX_getargument(char *destination, const char *source, bool strip, bool keep);

// Returns the first position from `text` on that is neither a blank nor ','.
const char *BRAX_nextfield(const char *text);

// Radix of numbers without a prefix; 10.
extern int32_t Radix;

// The last error of BRAX_getnum or BRAX_getstring; callers clear it first. 0 none, 1 octal
// escape above 255, 2 '8' or '9' in an escape, 3 backslash at the start of unquoted text,
// 4 no closing quote, 5 more than 4 characters, 6 empty, 7 more than 10 decimal digits,
// 8 more than 8 hexadecimal digits, 9 more than 32 digits, 10 not a number.
extern int32_t BRAXerrorcount;

// Returns the value of a number: 123, -5, 0x1F $1F &1F 1Fh (hexadecimal), @17 17o 17q
// (octal), %101 101b (binary), 12d, 3$21 (radix 3), 'AB' (character codes, the first one
// highest), ^C (control character). Wraps at 32 bits. Sets BRAXerrorcount on error and
// returns 0 or, for too many digits, their value.
int32_t BRAX_getnum(const char *text);

// Copies a double-quoted (with escapes), single-quoted or unquoted string and returns the
// position after it. Sets BRAXerrorcount on error.
const char *BRAX_getstring(char *destination, const char *text);

// Returns whether BRAX_getopt2 takes the text for a number.
bool BRAX_isdigit(const char *text);

// Returns whether the text up to the first blank, ';' or its end is an optional '-' and decimal
// digits, perhaps none.
bool BRAX_isnumber(const char *text);

// Reads the value after an option's name into *variable and returns the position after it.
// `label` names the option in messages. A min of -2147483648 and a max of 2147483647 are no
// bounds. Without a number the value is `defaultValue`, at most max, and nothing is read.
// A value out of bounds becomes the bound. "?" prints the value and the range instead.
// Every message needs a non-zero OPTverbose and sets BRAXhelpgiven, which ends the run
// after the call.
const char *BRAX_getopt2(int32_t *variable, const char *text, const char *label, int32_t min,
                         int32_t max, int32_t defaultValue);

// Calls BRAX_getopt2 with default 1: a switch without a value is on.
const char *BRAX_getopt(int32_t *variable, const char *text, const char *label, int32_t min,
                        int32_t max);

// Calls BRAX_getopt2 with min 0 for the framework's own options, which may follow one
// another in one word: a number ends before the first character of another one (v3w0).
const char *BRAX_getbuiltin(int32_t *variable, const char *text, const char *label, int32_t max,
                            int32_t defaultValue);

// Copies one field, stripped, with ',' and '=' kept, and returns the position after it. The
// other arguments are unused.
const char *BRAX_getstropt(char *destination, const char *text, const char *label,
                           const char *defaultText, int32_t min, int32_t max, int32_t size);
