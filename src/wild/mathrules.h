// Math rules compute the number that a '#' of the destination inserts. A rule is a target, '='
// and a template: "#[1]=#[1]*2+1" changes 7 of capture 1 to 15, "#=#+1" adds one to every
// capture.
//
// The target is '#' for every capture, or #[index] for one. In the template #[index] inserts
// the text of that capture and '#' that of the capture being computed. The result is an
// expression (see expr/expr.h). '#', '[' and ']' are the matcher's current special
// characters. A rule and its expression have at most 39 characters.
#pragma once

#include <cstdint>

// WILD_applymathrules's result without a rule.
constexpr int32_t WILDNORULE = -32768;

// The rules in the order added, owned; null without any.
extern char **OPTmathrules;
extern int32_t nummathrules;

// Appends a copy of the rule. Does nothing when memory runs out.
void WILD_addmathrule(const char *rule);

// Frees every rule.
void WILD_deletemathrules();

// Returns the value of capture `index` of `count` captures: the wrapping sum of its rules'
// values, each truncated toward zero to 32 bits. Returns WILDNORULE when none applies or one
// fails. A failure prints a message on standard output when OPTverbose is above 1, after the
// evaluator's own. Templates of rules for other captures are not checked.
int32_t WILD_applymathrules(char **captures, int32_t index, int32_t count);
