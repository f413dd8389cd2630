// Math rules: compute the number that a number capture of the matcher contributes to the
// output, instead of copying it. A rule is a target, '=' and an expression template:
// "#[1]=#[1]*2+1" turns the captured 7 of capture 1 into 15, "#=#+1" adds one to every capture.
//
// The target is '#' for every capture, or #[index] for one. In the template #[index] stands
// for the text of that capture and a '#' without bracket for the one being computed; the rest
// is copied, and what comes out is an expression (see expr/expr.h). '#', '[' and ']' are the
// matcher's characters of the moment. A rule, and an expression made by one, may have 39
// characters.
#pragma once

#include <cstdint>

// What WILD_applymathrules returns when no rule applied.
constexpr int32_t WILDNORULE = -32768;

// The rules in the order added, owned; null when there are none.
extern char **OPTmathrules;
extern int32_t nummathrules;

// Appends a copy of the rule. When memory runs out the list stays as it was.
void WILD_addmathrule(const char *rule);

// Releases every rule.
void WILD_deletemathrules();

// The value of capture `index` of `count` captures: the values of the rules that apply to it,
// in order, each truncated toward zero to 32 bits, added up (wrapping). WILDNORULE when none
// applies or one fails; a failure is told on standard output when OPTverbose is above 1,
// behind what the evaluator says itself. A rule for another capture is never a failure
// because of its template.
int32_t WILD_applymathrules(char **captures, int32_t index, int32_t count);
