// The evaluator: one expression, evaluated twice in an evaluator with two variables.
#include "fuzz.h"

#include "expr/expr.h"
#include "mem/galloc.h"

#include <cstring>

namespace {

void evaluate(const void *context) {
    const char *text = static_cast<const char *>(context);
    EXPR *evaluator = EXPR_open();
    EXPR_set(evaluator, "x", 12.5);
    EXPR_set(evaluator, "count", -3);
    const double first = EXPR_get(evaluator, text);
    const int error = EXPR_error(evaluator);
    const double second = EXPR_get(evaluator, text);
    // Random numbers differ, and the first use of a name that ends in '#' creates it.
    if (strstr(text, "rand") == nullptr && strchr(text, '#') == nullptr)
        fuzzrequire(error == EXPR_error(evaluator) &&
                        (first == second || (first != first && second != second)),
                    "two evaluations differ");
    EXPR_close(evaluator);
}

} // namespace

void fuzzexpression(const std::string &input) {
    const int held = galloccount;
    fuzzsurvives(evaluate, std::string(input.c_str()).c_str());
    fuzzrequire(galloccount == held, "an evaluation kept memory");
}
