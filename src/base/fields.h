// Reads fields and option values out of the option text: one field (an option word, a
// name, a destination, a value) at a time, respecting brackets and quotes, and numbers in
// an assembler-like syntax within a range and with a default.
//
// A program's own option callback uses the same readers, so that all options behave alike.
// Every buffer that receives a field holds BRAXFIELDSIZE (2,048) bytes; a longer field is
// refused (BRAX_refuse) and comes out empty.
#pragma once

#include <cstdint>

// A character that separates fields: its signed value is at most 32 and it is not the hard
// space. Bytes 128 to 255 are blanks too.
bool isblankchar(char c);

// Whether c opens an enclosed part: ( { [ " ` '
bool islim(char c);

// The character that closes what c opened; other characters give themselves.
char limtodelim(char c);

// A blank for the hard space, else the character.
char tosoftspace(char c);

// Copies the field at `source` and returns the position where it ended. `strip` removes
// one pair of limiters around the whole field; `keep` makes ',' and '=' ordinary. A null
// destination only looks for the end, however far away it is.
const char *BRAX_getfield(char *destination, const char *source, bool strip, bool keep);

// BRAX_getfield for what ends at a space: bytes above 127, which separate fields elsewhere,
// belong to the field.
const char *BRAX_getargument(char *destination, const char *source, bool strip, bool keep);

// The first position at or behind `text` that is neither a blank nor ','.
const char *BRAX_nextfield(const char *text);

// Radix of numbers without a prefix; 10.
extern int32_t Radix;

// The last error of BRAX_getnum or BRAX_getstring; callers clear it first. 0 none, 1 octal
// escape above 255, 2 '8' or '9' in an escape, 3 unquoted text began with a backslash, 4 no
// closing quote, 5 more than 4 characters, 6 empty, 7 more than 10 decimal digits, 8 more
// than 8 hexadecimal digits, 9 more than 32 digits, 10 not a number.
extern int32_t BRAXerrorcount;

// The value of a number: 123, -5, 0x1F $1F &1F 1Fh (hexadecimal), @17 17o 17q (octal),
// %101 101b (binary), 12d, 3$21 (radix 3), 'AB' (character codes, first one highest), ^C
// (control character). Wraps at 32 bits. Sets BRAXerrorcount on error, with value 0 or,
// for too many digits, the value of the digits.
int32_t BRAX_getnum(const char *text);

// Reads a double-quoted (with escapes), single-quoted or unquoted text into the
// destination and returns the position behind it; sets BRAXerrorcount on error.
const char *BRAX_getstring(char *destination, const char *text);

// Whether BRAX_getopt2 takes the text for a number.
bool BRAX_isdigit(const char *text);

// Whether the text up to a blank, ';' or its end is decimal digits behind one optional '-';
// an empty text is a number.
bool BRAX_isnumber(const char *text);

// Reads the value behind an option's name into *variable and returns the position behind
// it. `label` names the option in messages; min -2147483648 and max 2147483647 mean no
// bound. Without a number the value is `defaultValue` (at most max) and nothing is
// consumed. Every problem is reported when OPTverbose is non-zero and then sets
// BRAXhelpgiven, which ends the run after the call; the bound is used. "?" shows the
// variable's value and range.
const char *BRAX_getopt2(int32_t *variable, const char *text, const char *label, int32_t min,
                         int32_t max, int32_t defaultValue);

// BRAX_getopt2 with default 1: a switch given without a value is switched on.
const char *BRAX_getopt(int32_t *variable, const char *text, const char *label, int32_t min,
                        int32_t max);

// BRAX_getopt2 from 0 for the framework's own options, which may follow one another in one word:
// a number before the first character of another one ends there (v3w0).
const char *BRAX_getbuiltin(int32_t *variable, const char *text, const char *label, int32_t max,
                            int32_t defaultValue);

// Reads one field, stripped, ',' and '=' kept, and returns the position after it. The other
// arguments are not used.
const char *BRAX_getstropt(char *destination, const char *text, const char *label,
                           const char *defaultText, int32_t min, int32_t max, int32_t size);
