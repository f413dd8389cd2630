// Range specifications and the iterator. Input, a line each: a specification, a text and a number.
#include "fuzz.h"

#include "base/fields.h"
#include "base/options.h"
#include "expr/expr.h"
#include "mem/galloc.h"
#include "range/range.h"
#include "range/ranger.h"

#include <cstdlib>
#include <regex>

namespace {

constexpr size_t longestInput = 4096;
constexpr int mostValues = 500;

std::string spec;
int32_t number;
RANGER *ranger = nullptr; // an expression can end the process

// Bounds that are texts, such as 10+3, leave the numbers open.
void checknumbers() {
    static const std::regex numbers(R"((!?-?\d*(\.\.-?\d*)?(\+=-?\d*)?(,|$))*)");
    if (spec.size() > 100 || !std::regex_match(spec, numbers) ||
        RANGE_check(spec.c_str(), 0, 100) == 0)
        return;
    for (int direction = -1; direction <= 1; ++direction) {
        const int32_t closest = RANGE_constrain(spec.c_str(), number, direction);
        fuzzrequire(closest >= RANGEUNLIMITED || closest <= RANGENOLOWER ||
                        RANGE_match(spec.c_str(), nullptr, closest) != 0,
                    "the closest value is not allowed");
    }
    const int64_t minimum = RANGE_min(spec.c_str(), RANGENOLOWER);
    const int64_t maximum = RANGE_max(spec.c_str(), RANGEUNLIMITED);
    int32_t allowed = 0;
    // Bounds below RANGENOLOWER count, but the loop does not reach them.
    if (spec.find_first_of(",!") != std::string::npos || maximum < minimum ||
        minimum <= RANGENOLOWER || maximum - minimum > mostValues)
        return;
    for (int64_t value = minimum; value <= maximum; ++value)
        allowed += RANGE_match(spec.c_str(), nullptr, static_cast<int32_t>(value));
    fuzzrequire(allowed == RANGE_count(spec.c_str(), RANGENOLOWER, RANGEUNLIMITED),
                "the count is not the number of values");
}

void iterate(const void * /*context*/) {
    for (EXPR *evaluator : {static_cast<EXPR *>(nullptr), EXPR_open()}) {
        ranger = RANGER_open(evaluator, spec.c_str(), -10.0, 1e6);
        RANGER_info(ranger, nullptr, nullptr, nullptr);
        for (int mode = 0; mode < 3; ++mode)
            RANGER_closest(ranger, number / 8.0, mode);
        double value = 0;
        for (int i = 0; i < mostValues && RANGER_next(ranger, &value) != 0; ++i) {
        }
        RANGER_close(ranger);
        ranger = nullptr;
        EXPR_close(evaluator);
    }
}

} // namespace

void fuzzrange(const std::string &input) {
    if (input.size() > longestInput)
        return;
    std::vector<std::string> texts = fuzzpieces(input, '\n', 3);
    texts.resize(3);
    spec = texts[0];
    number = static_cast<int32_t>(strtoul(texts[2].c_str(), nullptr, 0));
    const int held = galloccount;
    char field[BRAXFIELDSIZE];
    BRAX_getrangefield(field, spec.c_str(), false, true);
    BRAX_newrefusals();
    RANGE_match(spec.c_str(), texts[1].c_str(), number);
    checknumbers();
    fuzzsurvives(iterate, nullptr);
    RANGER_close(ranger);
    ranger = nullptr;
    fuzzrequire(galloccount == held, "a range kept memory");
}
