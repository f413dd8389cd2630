// Evaluating expressions in an open evaluator, and in one opened for each of them.
#include "expr/expr.h"

#include <benchmark/benchmark.h>

namespace {

// 60 characters of variables, numbers and one function call.
constexpr const char *longText = "width*height+depth*(width-12.5)/max(height,3)-2*depth+100-17";
constexpr const char *shortText = "12*2+1";

EXPR *openevaluator() {
    EXPR *evaluator = EXPR_open();
    EXPR_set(evaluator, "width", 40);
    EXPR_set(evaluator, "height", 12.5);
    EXPR_set(evaluator, "depth", 7);
    return evaluator;
}

void evaluate(benchmark::State &state, const char *text) {
    EXPR *evaluator = openevaluator();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(EXPR_get(evaluator, text));
    state.SetItemsProcessed(state.iterations());
    EXPR_close(evaluator);
}
BENCHMARK_CAPTURE(evaluate, sixtyCharacters, longText);
BENCHMARK_CAPTURE(evaluate, mathRule, shortText);

void OpenEvaluateClose(benchmark::State &state) {
    while (state.KeepRunning()) {
        EXPR *evaluator = EXPR_open();
        benchmark::DoNotOptimize(EXPR_get(evaluator, shortText));
        EXPR_close(evaluator);
    }
}
BENCHMARK(OpenEvaluateClose);

} // namespace
