// Frees an evaluator and reports its errors.
#include "expr/internal.h"

#include "base/options.h"
#include "mem/galloc.h"

#include <cstdlib>

namespace {

void freeblocks(EXPRBLOCK *block) {
    while (block != nullptr) {
        EXPRBLOCK *next = block->next;
        gfree(block);
        block = next;
    }
}

} // namespace

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

void EXPR_outofmemory(EXPR *e) {
    BRAX_say("Out of memory!\n");
    quit_cleanup(e);
}

void *EXPR_require(EXPR *e, int64_t bytes) {
    void *block = gallocarray<char>(bytes);
    if (block == nullptr)
        EXPR_outofmemory(e);
    return block;
}
