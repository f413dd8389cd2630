// Range specifications and the iterator. Input, a line each: a specification, a text, the value
// tested, and the two defaults.
#include "fuzz.h"

#include "base/fields.h"
#include "base/options.h"
#include "expr/expr.h"
#include "mem/galloc.h"
#include "range/range.h"
#include "range/ranger.h"

#include <cstdlib>

namespace {

constexpr size_t longestInput = 4096;
constexpr int mostValues = 500;

struct CASE {
    const char *spec;
    const char *text;
    int32_t number, lower, upper;
};

bool isspecial(int32_t number) {
    return number >= RANGEUNLIMITED || number <= RANGENOLOWER;
}

void checkspecification(const CASE &c) {
    const std::string spec = c.spec;
    RANGE_match(c.spec, c.text, c.number);
    RANGE_count(c.spec, c.lower, c.upper);
    // Bounds that are texts leave the numbers open.
    if (RANGE_check(c.spec, c.lower, c.upper) == 0 ||
        spec.find_first_not_of("0123456789,!.+-=") != std::string::npos)
        return;
    for (int direction = -1; direction <= 1; ++direction) {
        const int32_t closest = RANGE_constrain(c.spec, c.number, direction);
        fuzzrequire(isspecial(closest) || RANGE_match(c.spec, nullptr, closest) != 0,
                    "the closest value is not allowed");
    }
    const int64_t minimum = RANGE_min(c.spec, RANGENOLOWER);
    const int64_t maximum = RANGE_max(c.spec, RANGEUNLIMITED);
    if (spec.find_first_of(",!") != std::string::npos || maximum < minimum ||
        maximum - minimum > mostValues)
        return;
    int32_t allowed = 0;
    for (int64_t value = minimum; value <= maximum; ++value)
        allowed += RANGE_match(c.spec, nullptr, static_cast<int32_t>(value));
    fuzzrequire(allowed == RANGE_count(c.spec, RANGENOLOWER, RANGEUNLIMITED),
                "the count is not the number of values");
}

void readoption(const void *context) {
    const CASE &c = *static_cast<const CASE *>(context);
    char field[BRAXFIELDSIZE];
    BRAX_getrangefield(field, c.spec, false, true);
    BRAX_newrefusals();
    BRAX_getrangeopt(field, c.spec, "label", c.lower, c.upper);
}

RANGER *ranger = nullptr; // an expression can end the process

void iterate(const void *context) {
    const CASE &c = *static_cast<const CASE *>(context);
    for (EXPR *evaluator : {static_cast<EXPR *>(nullptr), EXPR_open()}) {
        ranger = RANGER_open(evaluator, c.spec, -10.0, 1e6);
        RANGER_info(ranger, nullptr, nullptr, nullptr);
        for (int mode = 0; mode < 3; ++mode)
            RANGER_closest(ranger, c.number / 8.0, mode);
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
    std::vector<std::string> texts = fuzzpieces(input, '\n', 5);
    texts.resize(5);
    const auto number = [&](size_t line) {
        return static_cast<int32_t>(strtoul(texts[line].c_str(), nullptr, 0));
    };
    const CASE c = {texts[0].c_str(), texts[1].c_str(), number(2), number(3), number(4)};
    const int held = galloccount;
    checkspecification(c);
    fuzzsurvives(readoption, &c);
    fuzzsurvives(iterate, &c);
    RANGER_close(ranger);
    ranger = nullptr;
    fuzzrequire(galloccount == held, "a range kept memory");
}
