// The built-in options that every program built on the framework understands, and the
// tests that recognise a text as an option.
#pragma once

// Tries the built-in options by the first character of `text` (which starts behind the
// '-'), applies the one found, and returns the position behind it; null when none matches.
// `scanning` is true for the scan of the option text, where the option "version" is
// checked, which may end the process with status 101.
const char *BRAX_builtin(const char *text, bool scanning);

// Whether the text begins with the word ("sort", "nologo") and no letter follows it. Such
// words are the framework's before the program's callback sees them.
bool BRAX_isreserved(const char *text);

// Shows help on the option word at `text` when it ends in '?', is not reserved, there is a
// usage callback and no help was given yet. Returns the position behind what that consumed,
// or null when it was no such request. A lone built-in numeric option (v?, log?, sort?) then
// also shows its value and range.
const char *BRAX_topichelp(const char *text, bool scanning);

// Recognises one option word, the program's or a built-in one, at `text` (behind its '-'),
// with the option's effect. Returns the position behind it; null, with a message when
// OPTverbose is non-zero, when the word is unknown or other text sticks to it.
const char *Zop(const char *text);

// Whether `name` reads as an option and Zop recognises it: behind a '-' or the '.' of a bare
// extension without that character, behind '=' or '+' whole.
bool BRAX_isoption(const char *name);

// Whether a command-line argument must be quoted to stay one name: it holds a space, is not
// enclosed already and is not an option. Has Zop's effects on the option values.
bool BRAX_nameneedsquotes(const char *text);

// Sets the path rule or, when the text is no path, the name rule of the batch.
void BRAX_setdestinationrule(const char *text);

// What the option "version" compares with: the version and name given to BRAX_parse.
extern const char *BRAXversiontext;
extern const char *BRAXprogram;
