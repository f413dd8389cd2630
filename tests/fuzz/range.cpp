// Range specifications and the iterator, held against the laws that bind their functions to each
// other. Input, a line each: a specification, a text, and numbers: the value tested, another, and
// the defaults.
#include "fuzz.h"

#include "base/options.h"
#include "expr/expr.h"
#include "mem/galloc.h"
#include "range/range.h"
#include "range/ranger.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t longestInput = 4096;
constexpr int mostValues = 500;

struct CASE {
    const char *spec;
    const char *text;
    int32_t number, other, lower, upper;
};

bool isspecial(int32_t number) {
    return number >= RANGEUNLIMITED || number <= RANGENOLOWER;
}

bool allowed(const CASE &c, int32_t number) {
    return RANGE_match(c.spec, nullptr, number) != 0;
}

// Whether both bounds of every element are absent or numbers.
bool isnumeric(const std::string &spec) {
    for (size_t at = 0; at < spec.size();) {
        const size_t end = std::min(spec.find(',', at), spec.size());
        const std::string element = spec.substr(at, end - at);
        const char *parts = element.c_str();
        parts += parts[0] == '!' && parts[1] != 0 ? 1 : 0;
        char bounds[2][RANGEPARTSIZE];
        if (!rangeminstr(bounds[0], parts) || !rangemaxstr(bounds[1], parts))
            return false;
        for (const char *bound : bounds) {
            if (bound[0] != 0 && rangeisnumeric(bound) == 0)
                return false;
        }
        at = end + 1;
    }
    return true;
}

int64_t distance(int64_t a, int64_t b) {
    return a < b ? b - a : a - b;
}

void checkclosest(const CASE &c) {
    for (int direction = -1; direction <= 1; ++direction) {
        const int32_t closest = RANGE_constrain(c.spec, c.number, direction);
        if (isspecial(closest))
            continue;
        fuzzrequire(allowed(c, closest), "the closest value is not allowed");
        if (direction != 0)
            continue;
        for (const int32_t value : {c.number, c.other}) {
            if (!isspecial(value) && allowed(c, value))
                fuzzrequire(distance(closest, c.number) <= distance(value, c.number),
                            "a nearer value is allowed");
        }
    }
}

// Counts the values of a single element one by one.
void checkcount(const CASE &c, int32_t minimum, int32_t maximum) {
    if (strpbrk(c.spec, ",!") != nullptr || isspecial(minimum) || isspecial(maximum) ||
        distance(minimum, maximum) > mostValues)
        return;
    int32_t count = 0;
    for (int64_t value = minimum; value <= maximum; ++value)
        count += allowed(c, static_cast<int32_t>(value)) ? 1 : 0;
    fuzzrequire(RANGE_count(c.spec, RANGENOLOWER, RANGEUNLIMITED) == count,
                "the count is not the number of values");
}

void checknumbers(const CASE &c) {
    const int32_t minimum = RANGE_min(c.spec, RANGENOLOWER);
    const int32_t maximum = RANGE_max(c.spec, RANGEUNLIMITED);
    for (const int32_t number : {c.number, c.other}) {
        if (number != INT32_MIN && allowed(c, number))
            fuzzrequire(minimum <= number && number <= maximum,
                        "a value beyond the minimum or maximum is allowed");
    }
    checkclosest(c);
    checkcount(c, minimum, maximum);
}

void checkfields(const CASE &c) {
    char field[BRAXFIELDSIZE];
    for (int flags = 0; flags < 4; ++flags) {
        const char *end = BRAX_getrangefield(field, c.spec, (flags & 1) != 0, (flags & 2) != 0);
        const auto taken = static_cast<size_t>(end - c.spec);
        fuzzrequire(taken <= strlen(c.spec), "a field ends behind its text");
        if ((flags & 1) == 0 && taken < sizeof field)
            fuzzrequire(strlen(field) == taken && memcmp(field, c.spec, taken) == 0,
                        "a field is not what was read");
    }
    BRAX_newrefusals();
}

void readoption(const void *context) {
    const CASE &c = *static_cast<const CASE *>(context);
    char field[BRAXFIELDSIZE];
    BRAX_getrangeopt(field, c.spec, "label", c.lower, c.upper);
    fuzzrequire(c.upper == RANGEUNLIMITED || RANGE_check(field, c.lower, c.upper) != 0,
                "an option's range is malformed");
}

void checkspecification(const CASE &c) {
    const bool whole = RANGE_check(c.spec, c.lower, c.upper) != 0;
    const bool matched = RANGE_match(c.spec, c.text, c.number) != 0;
    fuzzrequire(whole || !matched, "a malformed range allows a value");
    fuzzrequire(RANGE_min(c.spec, c.lower) >= c.lower, "the minimum is below its bound");
    fuzzrequire(RANGE_max(c.spec, c.upper) <= c.upper, "the maximum is above its bound");
    fuzzrequire(RANGE_count(c.spec, c.lower, c.upper) <= distance(int64_t{c.upper} + 1, c.lower),
                "the count is larger than the span");
    RANGE_constrain(c.spec, c.number, -1);
    if (whole && isnumeric(c.spec))
        checknumbers(c);
    checkfields(c);
    fuzzsurvives(readoption, &c);
}

// Out here, for an expression that ends the process leaves by a jump.
RANGER *ranger = nullptr;

// What the whole text has, by RANGER_info.
struct EXTENT {
    double minimum, maximum;
    int64_t count;
    bool whole;
};

// Looks at the values one by one. Where doubles lie further apart than steps, a step may end an
// element before its count.
void checkvalues(const EXTENT &extent, double wanted) {
    const double nearest = RANGER_closest(ranger, wanted, 0);
    ranger->failed = 0; // RANGER_closest has told
    const bool exact = extent.minimum > -1e9 && extent.maximum < 1e9;
    double value = 0;
    double smallestStep = 1;
    int64_t count = 0;
    for (; count < mostValues && RANGER_next(ranger, &value) != 0; ++count) {
        if (std::isfinite(value)) {
            fuzzrequire(extent.minimum <= value && value <= extent.maximum,
                        "a value lies beyond the ends");
            fuzzrequire(!exact || extent.count > mostValues ||
                            std::fabs(nearest - wanted) <= std::fabs(value - wanted) + 1e-6,
                        "a nearer value is handed out");
        }
        smallestStep = std::min(smallestStep, std::fabs(ranger->step));
    }
    fuzzrequire(value == ranger->current || std::isnan(value), "the current value is not the last");
    if (count < mostValues ? exact && smallestStep > 1e-3 : extent.count < mostValues)
        fuzzrequire(count == extent.count, "the count is not the number of values");
}

void checkranger(double wanted) {
    EXTENT extent = {};
    extent.whole = RANGER_info(ranger, &extent.minimum, &extent.maximum, &extent.count) != 0;
    for (int mode = 0; mode < 3; ++mode) {
        const double closest = RANGER_closest(ranger, wanted, mode);
        fuzzrequire((ranger->failed == 0) == extent.whole, "an element fails only sometimes");
        ranger->failed = 0;
        if (closest == 0 || !std::isfinite(closest))
            continue;
        fuzzrequire(extent.minimum <= closest && closest <= extent.maximum,
                    "the closest value lies beyond the ends");
        fuzzrequire(mode != 1 || closest <= wanted, "the value is not at or below");
        fuzzrequire(mode != 2 || closest >= wanted, "the value is not at or above");
    }
    checkvalues(extent, wanted);
}

void iterate(const void *context) {
    const CASE &c = *static_cast<const CASE *>(context);
    for (EXPR *evaluator : {static_cast<EXPR *>(nullptr), EXPR_open()}) {
        // The same text has the same values each time, unless it draws or keeps some.
        if (evaluator == nullptr || strpbrk(c.spec, "#dD") == nullptr) {
            ranger = RANGER_open(evaluator, c.spec, -10.0, 1e6);
            checkranger(c.number / 8.0);
            RANGER_close(ranger);
            ranger = nullptr;
        }
        EXPR_close(evaluator);
    }
}

} // namespace

void fuzzinput(const std::string &input) {
    if (input.size() > longestInput)
        return;
    std::vector<std::string> texts = fuzzpieces(input, '\n', 6);
    texts.resize(6);
    int32_t numbers[4] = {};
    for (size_t i = 0; i < 4; ++i)
        numbers[i] =
            static_cast<int32_t>(static_cast<uint32_t>(strtoul(texts[i + 2].c_str(), nullptr, 0)));
    const int held = galloccount;
    const CASE c = {texts[0].c_str(), texts[1].c_str(), numbers[0],
                    numbers[1],       numbers[2],       numbers[3]};
    checkspecification(c);
    fuzzrequire(galloccount == held, "a range kept memory");
    fuzzsurvives(iterate, &c);
    RANGER_close(ranger);
    ranger = nullptr;
    fuzzrequire(galloccount == held, "an iterator kept memory");
}
