// The entry points for users.
#include "expr/expr.h"

#include "expr/internal.h"
#include "mem/galloc.h"

#include <cstring>
#include <new>

namespace {

// Few: there are at most 512 names, and opening an evaluator clears all buckets.
constexpr int32_t functionBuckets = 256;

} // namespace

EXPR *EXPR_open() {
    void *memory = gallocarray<EXPR>(1);
    if (memory == nullptr)
        return nullptr;
    auto *e = new (memory) EXPR;
    InitExpression(e);
    memset(&e->error, 0, sizeof *e - offsetof(EXPR, error)); // all after the stack
    e->radix = 10;
    e->values = reinterpret_cast<EXPRVALUE *>(e->stack);
    e->operators = reinterpret_cast<EXPROPERATOR *>(e->stack + EXPRSTACKBYTES);
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

// Does not clear pending calls, because a function of an expression may call EXPR_get.
double EXPR_get(EXPR *evaluator, const char *text, int64_t length) {
    evaluator->error = 0;
    return GetValue(evaluator, text, length, 0);
}

int EXPR_error(const EXPR *evaluator) {
    return evaluator->error;
}
