// The built-in options that every program with this framework has, and the functions that
// recognise a text as an option.
#pragma once

// Recognises a built-in option at `text` (after its '-') by its first character and applies it.
// Returns the position after it, or null if there is none. `scanning` is true for the scan of
// the option text. The option "version" is checked only there, which may end the process with
// status 101.
const char *BRAX_builtin(const char *text, bool scanning);

// Recognises a request for help on the option word at `text`, or an option of the program's
// callback; "sort" and "nologo" are never passed to the callback. Returns the position after it,
// or null. Help is shown if the word ends in '?', there is a usage callback and no help was
// given yet. For a numeric built-in option alone (v?, log?, sort?) that includes its value and
// range.
const char *BRAX_programoption(const char *text, bool scanning);

// Reports the word at `text` as an unknown option, met at one of the places 1 to 3, and sets
// BRAXhelpgiven. Does nothing if OPTverbose is 0.
void BRAX_unknownoption(int place, const char *text);

// Recognises one option word of either kind at `text` (after its '-') and applies it. Returns the
// position after it. Null, with a message if OPTverbose is not 0, if the word is unknown or
// other text follows it directly.
const char *Zop(const char *text);

// Whether `name` has the form of an option and Zop recognises it. A leading '-', or the '.' of a
// bare extension, is not passed to Zop; a leading '=' or '+' is.
bool BRAX_isoption(const char *name);

// Whether a command-line argument needs quotes to remain one name: it contains a space, is not
// enclosed and is not an option. Applies it if it is an option, as Zop does.
bool BRAX_nameneedsquotes(const char *text);

// Sets the batch's path rule if the text is a path, else its name rule.
void BRAX_setdestinationrule(const char *text);

// The version and name given to BRAX_parse, used by the option "version".
extern const char *BRAXversiontext;
extern const char *BRAXprogram;
