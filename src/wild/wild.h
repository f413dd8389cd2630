// wild: the wildcard matcher. One call tests a string against a source pattern and, on a
// match, builds an output from a destination pattern. Wildcards of the destination insert
// captures of the source pattern's. Read this file first, then match.cpp, which tests, and
// build.cpp, which writes. mathrules.h computes numbers for the output.
//
//   WILD_match(output, "file12.txt", "file#.txt", "new####.dat")  gives 1 and new0012.dat
//
// All twelve functions take output, string, pattern, destination and return 1 on a match,
// else 0. Letters in their names vary them:
//
//   n      a prefix of the string suffices; a fifth argument receives its length
//   i      case is ignored
//   c      (after i) literals of the destination take the case of the string's characters
//          that matched the pattern's literals
//   path   directory and name are matched separately, each with its own captures
//
// Source pattern: '*' matches any run of characters, '?' one character, '#' one or more
// digits. There is deliberately no backtracking: a wildcard before a literal ends at its
// first occurrence, so "*.c" does not match a.c.c. A '/' also matches a '\'.
//
// Destination: a wildcard inserts the next capture of its kind, or the one numbered in
// brackets (*[0] is the first). Second brackets hold a range (see range/range.h): *[0][2..4]
// inserts positions 2 to 4, ?[0][5] writes spaces up to column 5 first, #[0][1..9] replaces
// other numbers by zeros. The length of a run of '#' is the number's width, filled with
// zeros; "#,#" writes two numbers. Without a capture '*' writes nothing, '?' a space, and '#'
// current_unmatched.
//
// On failure: a mismatch before the first wildcard changes neither output nor length. A later
// one empties the output and stores the length matched so far. An invalid index leaves the
// output built so far and, unless OPTverbose is 0, prints a message on standard output. The
// path forms always empty the output; their length is the name part's.
//
// Limits in bytes: 1,023 for the pattern (runs of '*' and of '#' count once), each capture,
// each index with its brackets, and, in the path forms, each directory and name part of all
// four texts; 2,047 for the string when case is ignored. Beyond them the match fails and
// nothing is cut. The caller provides the output's buffer (see WILD_outputsize), which must
// not overlap the other texts.
//
// No allocated block outlives a call. The functions read the settings below, OPTverbose and
// the math rules, and write current_unmatched.
#pragma once

#include <cstdint>

// The special characters, as signed codes; they may change between calls.
extern int32_t WILDcharstar;         // '*'
extern int32_t WILDcharquestion;     // '?'
extern int32_t WILDcharnumber;       // '#'
extern int32_t WILDcharleftbracket;  // '['
extern int32_t WILDcharrightbracket; // ']'

// Number of insertions by '*' and '?', from the first one of each string match, that are
// converted to upper case.
extern int32_t WILDtoupper; // 0

// Written for a '#' without a capture; incremented after every string match that used it.
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

// Returns a sufficient size of the output buffer in bytes, for any of the twelve functions and
// any pattern. It depends on the destination and on the string's length only.
int64_t WILD_outputsize(const char *string, const char *destination);

// The framework's hooks to the matcher; a program may replace them.
using WILDMATCHFUN = int (*)(char *, const char *, const char *, const char *);
extern WILDMATCHFUN pathmatchfun;   // WILD_matchpath
extern WILDMATCHFUN stringmatchfun; // WILD_match

// ---- The parts of the functions above ----

// Size of a buffer for a collapsed pattern, an index or a part of it.
constexpr int WILDTEXTSIZE = 1024;

// These two implement all twelve. A null length requires the whole string to match;
// caseCarrying needs caseSensitive 0.
int matchstring(char *output, const char *string, const char *pattern, const char *destination,
                int *length, int caseSensitive, int caseCarrying);
int matchpath(char *output, const char *string, const char *pattern, const char *destination,
              int *length, int caseSensitive, int caseCarrying);

// Copies the pattern into WILDTEXTSIZE bytes, every run of '*' and of '#' as one. Returns
// false, with an empty copy, when it does not fit.
bool compressWildCard(char *destination, const char *pattern);

// Returns 1 when the characters match, else 0. A '/' of the pattern also matches '\'.
int charsequal(char patternChar, char stringChar, int caseSensitive);

// Returns the first occurrence of the needle, which may be empty, or null. Without case also
// returns null when either text has more than 2,047 characters.
const char *caseStrStr(const char *text, const char *needle, int caseSensitive);

// Returns 1 when the text is one or more digits and nothing else, else 0.
int isNumeric(const char *text);

// Writes one literal of the destination, each character in the case of the string's character
// at the same place, and advances all four positions. Characters beyond the pattern's literal
// take the last case. Writes no terminator.
void matchCase(char **output, const char **pattern, const char **destination, const char **string);

// Copies the one or two bracketed groups at the destination into WILDTEXTSIZE bytes and
// returns the position after them. An unclosed group gives an empty index and the
// destination's end, a group that is too long an empty index and null.
const char *getIndex(char *index, const char *destination);

// Returns 1 when the index is empty or has the form [number] or [number][range], possibly with
// empty brackets, else 0. Copies both contents into WILDTEXTSIZE bytes each.
int isValidIndex(const char *index, char *number, char *range);

// Writes the value in the radix, 2 to 36, with '-' before a negative one, into at most 34
// bytes. Writes nothing for any other radix.
void wild_itoa(int32_t value, char *buffer, int32_t radix);

// Returns a new array of the list's count - 1 strings and a copy of `text`, and frees the old
// array. The caller owns array and strings. Returns null when memory runs out; the list then
// stays unchanged. Only the math rules need captures in this form.
char **reallocateBuffer(char **list, const char *text, int32_t count);

// Frees the list and its strings. Null is allowed.
void freeBuffer(char **list, int32_t count);
