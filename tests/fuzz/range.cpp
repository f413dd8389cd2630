// Range specifications and the iterator: a specification, a text and numbers, each on a line
// of its own.
#include "fuzz.h"

#include "brax/options.h"
#include "expr/expr.h"
#include "mem/galloc.h"
#include "range/range.h"
#include "range/ranger.h"

#include <cstdlib>

namespace {

void iterate(const void *context) {
    const char *spec = static_cast<const char *>(context);
    for (EXPR *evaluator : {static_cast<EXPR *>(nullptr), EXPR_open()}) {
        RANGER *ranger = RANGER_open(evaluator, spec, -10.0, 1e6);
        double value = 0;
        for (int i = 0; i < 1000 && RANGER_next(ranger, &value) != 0; ++i) {
        }
        for (int mode = 0; mode < 3; ++mode)
            RANGER_closest(ranger, value / 3, mode);
        double minimum = 0;
        double maximum = 0;
        int64_t count = 0;
        RANGER_info(ranger, &minimum, &maximum, &count);
        RANGER_close(ranger);
        EXPR_close(evaluator);
    }
}

void check(const char *spec, const char *text, int32_t number, int32_t lower, int32_t upper) {
    const int matched = RANGE_match(spec, text, number);
    fuzzrequire(matched == 0 || RANGE_check(spec, RANGENOLOWER, RANGEUNLIMITED) != 0,
                "a malformed range allows a value");
    fuzzrequire(RANGE_min(spec, lower) >= lower, "the minimum is below its bound");
    fuzzrequire(RANGE_max(spec, upper) <= upper, "the maximum is above its bound");
    RANGE_count(spec, lower, upper);
    for (int direction = -1; direction <= 1; ++direction)
        RANGE_constrain(spec, number, direction);
    char field[BRAXFIELDSIZE];
    for (int flags = 0; flags < 4; ++flags)
        BRAX_getrangefield(field, spec, (flags & 1) != 0, (flags & 2) != 0);
}

} // namespace

void fuzzinput(const std::string &input) {
    std::vector<std::string> texts = fuzzpieces(input, '\n', 5);
    texts.resize(5);
    int32_t numbers[3] = {};
    for (int i = 0; i < 3; ++i)
        numbers[i] = static_cast<int32_t>(
            static_cast<uint32_t>(strtoul(texts[static_cast<size_t>(i) + 2].c_str(), nullptr, 0)));
    const int held = galloccount;
    check(texts[0].c_str(), texts[1].c_str(), numbers[0], numbers[1], numbers[2]);
    fuzzrequire(galloccount == held, "a range kept memory");
    if (texts[0].size() < 4096)
        fuzzsurvives(iterate, texts[0].c_str());
}
