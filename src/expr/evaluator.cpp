// What users of the evaluator call: opening, values of names, values of texts.
#include "expr/expr.h"

#include "expr/internal.h"
#include "mem/galloc.h"

#include <cstring>
#include <new>

namespace {

// There are never more than 512 names, and opening an evaluator costs what clearing the
// buckets costs.
constexpr int32_t functionBuckets = 256;

} // namespace

EXPR *EXPR_open() {
    void *room = gallocarray<EXPR>(1);
    if (room == nullptr)
        return nullptr;
    auto *e = new (room) EXPR;
    InitExpression(e);
    e->radix = 10;
    e->error = 0;
    e->values = reinterpret_cast<EXPRVALUE *>(e->stack);
    e->operators = reinterpret_cast<EXPROPERATOR *>(e->stack + EXPRSTACKBYTES);
    e->depth = 0;
    e->outerCalls = 0;
    e->callCount = 0;
    e->calls = nullptr;
    e->chains = nullptr;
    e->symbolBlocks = nullptr;
    e->nameBlocks = nullptr;
    e->sections = 0;
    e->functions = nullptr;
    e->functionCount = 0;
    e->functionTable = nullptr;

    e->calls = static_cast<EXPRCALL *>(EXPR_require(e, sizeof(EXPRCALL) * EXPRMAXCALLS));
    e->functions =
        static_cast<EXPRFUNCTION *>(EXPR_require(e, sizeof(EXPRFUNCTION) * EXPRMAXFUNCTIONS));
    e->functionTable = HASH_init(functionBuckets);
    if (e->functionTable == nullptr)
        EXPR_outofmemory(e);
    InitFunctions(e);
    if (e->functionTable->count != e->functionCount)
        EXPR_outofmemory(e);
    return e;
}

int EXPR_set(EXPR *evaluator, const char *name, double value) {
    const auto length = static_cast<int64_t>(strlen(name));
    EXPRSYMBOL *symbol = ReadSymTab(evaluator, name, length);
    if (symbol != nullptr)
        ModSymTab(symbol, value);
    else
        AddSymTab(evaluator, name, length, value);
    return 1;
}

double EXPR_get(EXPR *evaluator, const char *text) {
    return EXPR_get(evaluator, text, static_cast<int64_t>(strlen(text)));
}

// Pending calls need no clearing: GetValue leaves none of its own behind, and those of a
// function that asks its own evaluator for a value must stay.
double EXPR_get(EXPR *evaluator, const char *text, int64_t length) {
    evaluator->error = 0;
    return GetValue(evaluator, text, length, 0);
}

int EXPR_error(const EXPR *evaluator) {
    return evaluator->error;
}
