#include "expr/expr.h"

#include "brax/options.h"
#include "expr/internal.h"
#include "mem/galloc.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// There are never more than 512 names, and opening an evaluator costs what clearing the
// buckets costs.
constexpr int32_t functionBuckets = 256;

void freeblocks(EXPRBLOCK *block) {
    while (block != nullptr) {
        EXPRBLOCK *next = block->next;
        gfree(block);
        block = next;
    }
}

[[noreturn]] void outofmemory(EXPR *e) {
    BRAX_say("Out of memory!\n");
    quit_cleanup(e);
}

} // namespace

void *EXPR_require(EXPR *e, int64_t bytes) {
    void *block = gallocarray<char>(bytes);
    if (block == nullptr)
        outofmemory(e);
    return block;
}

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
        outofmemory(e);
    InitFunctions(e);
    if (e->functionTable->count != e->functionCount)
        outofmemory(e);
    return e;
}

void EXPR_close(EXPR *evaluator) {
    if (evaluator == nullptr)
        return;
    HASH_purge(evaluator->functionTable);
    grelease(evaluator->functions);
    grelease(evaluator->calls);
    grelease(evaluator->chains);
    freeblocks(evaluator->symbolBlocks);
    freeblocks(evaluator->nameBlocks);
    gfree(evaluator);
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

void EXPR_addfunc(EXPR *evaluator, const char *name, EXPRFUNC function, int kind) {
    if (evaluator->functionCount >= EXPRMAXFUNCTIONS)
        return;
    evaluator->functions[evaluator->functionCount] = {function, kind};
    HASH_add(evaluator->functionTable, name, evaluator->functionCount++);
}

void Error(EXPR *e, int32_t number, int32_t position) {
    if (number == EXPRUNDEFINED)
        BRAX_say("expression - ERROR UNDEFINED SYMBOL AT POSITION %d\n", position);
    else if (number == EXPRSYNTAX)
        BRAX_say("expression - ERROR OPERAND SYNTAX ERROR AT POSITION %d\n", position);
    else
        BRAX_say("expression - ERROR # %d AT POSITION %d\n", number, position);
    e->error = -1;
}

void EXPR_overflow(EXPR *e) {
    BRAX_say("\n%5d   %s\n", 0, "");
    BRAX_say("Secondary heap overflow - assembly terminated.");
    quit_cleanup(e);
}

void quit_cleanup(EXPR *e) {
    EXPR_close(e);
    exit(10);
}
