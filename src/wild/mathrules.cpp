#include "wild/mathrules.h"

#include "base/options.h"
#include "base/text.h"
#include "expr/expr.h"
#include "mem/galloc.h"
#include "wild/wildstate.h"

#include <cstring>

char **OPTmathrules = nullptr;
int32_t nummathrules = 0;

namespace {

constexpr size_t expressionSize = 40;

int32_t ruleCapacity = 0; // of OPTmathrules

// The captures of one match, and the index of the one being computed.
struct RULECAPTURES {
    char **texts;
    int32_t index;
    int32_t count;
};

// Returns the index in brackets at *p and moves after it. Returns -1 when it is malformed.
int32_t readindex(const char **p) {
    const char *digits = *p + 1;
    const size_t length = digitlength(digits);
    if (length == 0 || !isrightbracket(digits[length]))
        return -1;
    *p = digits + length + 1;
    return decimalvalue(digits, length);
}

// Writes the template at p with the captures' texts. Returns false when it is malformed.
bool expand(const char *p, const RULECAPTURES *captures, char *expression) {
    expression[0] = 0;
    size_t length = 0;
    while (*p != 0) {
        const char *text = p;
        size_t size = 1;
        if (isnumberchar(*p++)) {
            const int32_t index = isleftbracket(*p) ? readindex(&p) : captures->index;
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

enum OUTCOME { APPLIED, SKIPPED, FAILED };

OUTCOME evaluate(const char *expression, int32_t *value) {
    EXPR *evaluator = EXPR_open();
    if (evaluator == nullptr)
        return FAILED;
    *value = toint32(EXPR_tointeger(EXPR_get(evaluator, expression)));
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

OUTCOME applyrule(const char *rule, const RULECAPTURES *captures, int32_t *value) {
    const char *p = rule;
    if (!isnumberchar(*p++))
        return malformed(rule);
    if (isleftbracket(*p)) {
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
    if (copy != nullptr && growarray(OPTmathrules, nummathrules, ruleCapacity))
        OPTmathrules[nummathrules++] = copy;
    else
        grelease(copy);
}

void WILD_deletemathrules() {
    freeBuffer(OPTmathrules, nummathrules);
    OPTmathrules = nullptr;
    nummathrules = 0;
    ruleCapacity = 0;
}

int32_t WILD_applymathrules(char **captures, int32_t index, int32_t count) {
    const RULECAPTURES all = {captures, index, count};
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
