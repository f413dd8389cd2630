// The wildcard matcher: one call tests a string against a source pattern and, on a match,
// writes the output made from a destination pattern, in which every wildcard stands for
// something that a wildcard of the source pattern captured.
//
//   WILD_match(output, "file12.txt", "file#.txt", "new####.dat")  gives 1 and new0012.dat
//
// All twelve entry points take output, string, pattern, destination and return 1 on a match,
// else 0. Their names are made of these letters:
//
//   n      a prefix of the string suffices; a fifth argument receives its length
//   i      case is ignored
//   c      (behind i) literal characters of the destination take the case of the source
//          characters that matched the pattern's literals
//   path   directory and name are matched apart, each with its own captures
//
// Source pattern: '*' any run of characters, '?' one character, '#' one or more digits.
// There is no backtracking, on purpose: a wildcard in front of literal text ends at the first
// occurrence of that text, so "*.c" does not match a.c.c. A '/' also matches a '\'.
//
// Destination: a wildcard inserts the next capture of its kind, or the one whose number
// stands behind it in brackets (*[0] is the first), limited by a range in second brackets
// (see range/range.h): *[0][2..4] inserts positions 2 to 4, ?[0][5] writes spaces up to
// column 5 before it, #[0][1..9] inserts zeros for a number outside. A run of '#' is as wide as
// it is long, filled with zeros, and "#,#" writes two numbers. A star without capture writes
// nothing, a question mark a space, a number the running number current_unmatched.
//
// What a failure leaves: a mismatch in front of the first wildcard touches neither output nor
// length. Later ones empty the output and still write the length, which says how far the
// match came. An invalid index leaves the output made so far and, unless OPTverbose is 0, is
// told on standard output. The path forms empty the output in every case, and the length is
// the name part's.
//
// Limits in bytes: 1,023 for the pattern (its runs of '*' and of '#' counted once), for each
// capture, each index with its brackets, and, in the path forms, for every directory and name
// part of string, pattern, destination and output; 2,047 for the string when case is ignored.
// Beyond them the match fails, nothing is cut. The output's room is the caller's duty: see
// WILD_outputroom. The output must not overlap the other texts.
//
// Nothing allocated survives a call. Process-wide settings are read (those below, OPTverbose,
// the math rules) and current_unmatched is written.
#pragma once

#include <cstdint>

// The special characters, as signed character codes; every comparison uses the value of the
// moment.
extern int32_t WILDcharstar;         // '*'
extern int32_t WILDcharquestion;     // '?'
extern int32_t WILDcharnumber;       // '#'
extern int32_t WILDcharleftbracket;  // '['
extern int32_t WILDcharrightbracket; // ']'

// How many insertions by '*' and '?' of every string match, counted from the first, are
// converted to upper case.
extern int32_t WILDtoupper; // 0

// Written for a number wildcard without capture; one up after every string match that used it.
extern int32_t current_unmatched; // 0

int WILD_match(char *output, const char *string, const char *pattern, const char *destination);
int WILD_imatch(char *output, const char *string, const char *pattern, const char *destination);
int WILD_icmatch(char *output, const char *string, const char *pattern, const char *destination);
int WILD_matchpath(char *output, const char *string, const char *pattern, const char *destination);
int WILD_imatchpath(char *output, const char *string, const char *pattern, const char *destination);
int WILD_icmatchpath(char *output, const char *string, const char *pattern,
                     const char *destination);
int WILD_nmatch(char *output, const char *string, const char *pattern, const char *destination,
                int *length);
int WILD_nimatch(char *output, const char *string, const char *pattern, const char *destination,
                 int *length);
int WILD_nicmatch(char *output, const char *string, const char *pattern, const char *destination,
                  int *length);
int WILD_nmatchpath(char *output, const char *string, const char *pattern, const char *destination,
                    int *length);
int WILD_nimatchpath(char *output, const char *string, const char *pattern, const char *destination,
                     int *length);
int WILD_nicmatchpath(char *output, const char *string, const char *pattern,
                      const char *destination, int *length);

// Bytes, terminator included, that are enough for the output of any of the twelve, whatever
// the pattern. Grows with the string only through its length: one call for the longest string
// serves for all of them. Most outputs are far shorter.
int64_t WILD_outputroom(const char *string, const char *destination);

// The hooks through which the framework reaches the matcher; a program may replace them.
using WILDMATCHFUN = int (*)(char *, const char *, const char *, const char *);
extern WILDMATCHFUN pathmatchfun;   // WILD_matchpath
extern WILDMATCHFUN stringmatchfun; // WILD_match

// ---- The parts that the entry points are made of ----

// Size of the buffers for a collapsed pattern, an index and its two parts.
constexpr int WILDTEXTSIZE = 1024;

// All twelve: a null length asks for the whole string; case carrying goes with caseSensitive
// 0 only.
int matchstring(char *output, const char *string, const char *pattern, const char *destination,
                int *length, int caseSensitive, int caseCarrying);
int matchpath(char *output, const char *string, const char *pattern, const char *destination,
              int *length, int caseSensitive, int caseCarrying);

// Copies the pattern into WILDTEXTSIZE bytes, every run of '*' and every run of '#' as one.
// False, with an empty copy, when that does not fit.
bool compressWildCard(char *destination, const char *pattern);

// Whether the characters agree; a '/' of the pattern agrees with '\' too.
int charsequal(char patternChar, char stringChar, int caseSensitive);

// The first occurrence of the needle, which may be empty; null when there is none. Without
// case, null also when either text is longer than 2,047 characters.
const char *caseStrStr(const char *text, const char *needle, int caseSensitive);

// 1 when the text is one or more digits and nothing else.
int isNumeric(const char *text);

// Writes one literal run of the destination, each character in the case of the string's
// character beside it, and advances all four positions. Characters beyond the pattern's
// literal run take the last case seen. Ends no text.
void matchCase(char **output, const char **pattern, const char **destination, const char **string);

// Copies the one or two bracketed groups at the destination position into WILDTEXTSIZE bytes
// and returns the position behind them. A group that is not closed leaves the index empty
// and consumes the destination. Null, and an empty index, when it is too long.
const char *getIndex(char *index, const char *destination);

// 1 when the index is empty or has the form [number] or [number][range], each possibly
// without its contents; the contents are copied into WILDTEXTSIZE bytes each.
int isValidIndex(const char *index, char *number, char *range);

// Writes the value's digits in the radix (2 to 36), '-' in front of a negative one, into at
// most 34 bytes. Any other radix writes nothing.
void wild_itoa(int32_t value, char *buffer, int32_t radix);

// A capture list as owned texts: a new array of `count` texts, made of the list's count - 1
// and a copy of `text`; the old array is released. Null when memory runs out; the list then
// stays as it was. The matcher itself notes captures as positions in the string and makes
// such a list only for the math rules.
char **reallocateBuffer(char **list, const char *text, int32_t count);

// Releases the list and its texts; null is allowed.
void freeBuffer(char **list, int32_t count);
