// Math rules: compute the number that a number capture of the matcher contributes to the
// output, instead of copying it. A rule is a target, '=' and an expression template:
// "#[1]=#[1]*2+1" turns the captured 7 of capture 1 into 15, "#=#+1" adds one to every capture.
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

// The value of capture `index` of `count` captures, each a text of digits: the sum of the
// rules that apply to it. WILDNORULE when none does or one fails.
int32_t WILD_applymathrules(char **captures, int32_t index, int32_t count);
