#include "wild/mathrules.h"

#include "base/options.h"
#include "base/text.h"
#include "expr/expr.h"
#include "mem/galloc.h"
#include "wild/wild.h"

#include <algorithm>
#include <cmath>
#include <cstring>

char **OPTmathrules = nullptr;
int32_t nummathrules = 0;

namespace {

constexpr size_t expressionSize = 40;

int32_t rulesRoom = 0; // elements that OPTmathrules can hold

bool ischar(char c, int32_t special) {
    return c != 0 && charvalue(c) == special;
}

// The captures of one match, and the one that is being computed.
struct CAPTURES {
    char **texts;
    int32_t index;
    int32_t count;
};

// An index in brackets, the opening one at *p, which is left behind the closing one; what
// an int does not hold is INT32_MAX. -1 when there is no such index.
int32_t readindex(const char **p) {
    const char *digit = *p + 1;
    int64_t index = 0;
    for (; isdigitchar(*digit); ++digit)
        index = std::min<int64_t>(index * 10 + (*digit - '0'), INT32_MAX);
    if (digit == *p + 1 || !ischar(*digit, WILDcharrightbracket))
        return -1;
    *p = digit + 1;
    return static_cast<int32_t>(index);
}

// Writes the template at p with the captures' texts put in; false when it is malformed.
bool expand(const char *p, const CAPTURES *captures, char *expression) {
    expression[0] = 0;
    size_t length = 0;
    while (*p != 0) {
        const char *text = p;
        size_t size = 1;
        if (ischar(*p++, WILDcharnumber)) {
            const int32_t index = ischar(*p, WILDcharleftbracket) ? readindex(&p) : captures->index;
            if (index < 0 || index >= captures->count)
                return false;
            text = captures->texts[index];
            size = strlen(text);
        }
        if (length + size >= expressionSize)
            return false;
        memcpy(expression + length, text, size);
        length += size;
        expression[length] = 0;
    }
    return true;
}

// Truncates toward zero; what does not fit saturates, and what is not a number is 0.
int32_t truncated(double value) {
    if (value >= INT32_MAX)
        return INT32_MAX;
    if (value <= INT32_MIN)
        return INT32_MIN;
    return std::isnan(value) ? 0 : static_cast<int32_t>(value);
}

enum OUTCOME { APPLIED, SKIPPED, FAILED };

OUTCOME evaluate(const char *expression, int32_t *value) {
    EXPR *evaluator = EXPR_open();
    if (evaluator == nullptr)
        return FAILED;
    *value = truncated(EXPR_get(evaluator, expression));
    const bool failed = EXPR_error(evaluator) != 0;
    if (failed && OPTverbose > 1)
        BRAX_say("Error in expression: %s\n", expression);
    EXPR_close(evaluator);
    return failed ? FAILED : APPLIED;
}

OUTCOME malformed(const char *rule) {
    if (OPTverbose > 1)
        BRAX_say("Invalid rule format %s\n", rule);
    return FAILED;
}

OUTCOME applyrule(const char *rule, const CAPTURES *captures, int32_t *value) {
    const char *p = rule;
    if (!ischar(*p, WILDcharnumber))
        return malformed(rule);
    ++p;
    if (ischar(*p, WILDcharleftbracket)) {
        const int32_t target = readindex(&p);
        if (target < 0)
            return malformed(rule);
        if (target != captures->index)
            return SKIPPED;
    }
    char expression[expressionSize];
    if (*p != '=' || strlen(rule) >= expressionSize || !expand(p + 1, captures, expression))
        return malformed(rule);
    return evaluate(expression, value);
}

} // namespace

void WILD_addmathrule(const char *rule) {
    char *copy = galloctext(rule);
    if (copy != nullptr && growarray(OPTmathrules, nummathrules, rulesRoom))
        OPTmathrules[nummathrules++] = copy;
    else
        grelease(copy);
}

void WILD_deletemathrules() {
    for (int32_t i = 0; i < nummathrules; ++i)
        gfree(OPTmathrules[i]);
    grelease(OPTmathrules);
    nummathrules = 0;
    rulesRoom = 0;
}

int32_t WILD_applymathrules(char **captures, int32_t index, int32_t count) {
    const CAPTURES all = {captures, index, count};
    uint32_t sum = 0;
    bool applied = false;
    for (int32_t i = 0; i < nummathrules; ++i) {
        int32_t value = 0;
        const OUTCOME outcome = applyrule(OPTmathrules[i], &all, &value);
        if (outcome == FAILED)
            return WILDNORULE;
        applied = applied || outcome == APPLIED;
        sum += static_cast<uint32_t>(value);
    }
    return applied ? static_cast<int32_t>(sum) : WILDNORULE;
}
