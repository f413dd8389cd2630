#include "range/ranger.h"

#include "base/fields.h"
#include "base/text.h"
#include "mem/galloc.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr double noCandidate = 999999999999999.0;

bool ispair(const char *p, char first, char second) {
    return p[0] == first && p[1] == second;
}

bool isfieldend(const char *p) {
    return *p == 0 || *p == ',' || ispair(p, '.', '.') || ispair(p, '+', '=') ||
           ispair(p, '-', '=');
}

// Returns the position after the enclosed part that begins at p, or the end of the text. Only
// its own kind of brackets counts within it.
const char *skipenclosed(const char *p) {
    const char opening = *p;
    const char closing = limtodelim(opening);
    int64_t depth = 1;
    for (++p; *p != 0; ++p) {
        if (*p == closing)
            --depth;
        else if (*p == opening)
            ++depth;
        if (depth == 0)
            return p + 1;
    }
    return p;
}

const char *fieldend(const char *p) {
    while (!isfieldend(p))
        p = islim(*p) ? skipenclosed(p) : p + 1;
    return p;
}

// Reads a number of sign, digits and fraction. Returns false for any other field.
bool readplain(const char *p, const char *end, double *value) {
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+')
        ++p;
    const char *digits = p;
    while (p < end && isdigitchar(*p))
        ++p;
    if (p == digits)
        return false;
    if (p < end && *p == '.')
        ++p;
    while (p < end && isdigitchar(*p))
        ++p;
    if (p != end)
        return false;
    if (std::from_chars(digits, end, *value, std::chars_format::fixed).ec != std::errc())
        *value = strtod(digits, nullptr);
    *value = negative ? -*value : *value;
    return true;
}

// The parts of one element.
struct PARTS {
    double first, last, step;
    bool hasFirst, hasDots, hasLast, hasStep;
};

bool skippair(RANGER *ranger, char first, char second) {
    if (!ispair(ranger->cursor, first, second))
        return false;
    ranger->cursor += 2;
    return true;
}

// Skips a ','. Returns false when the element goes on at the cursor.
bool endelement(RANGER *ranger) {
    if (*ranger->cursor == ',')
        ++ranger->cursor;
    else if (*ranger->cursor != 0)
        return false;
    return true;
}

// Returns the rounding error allowed in a number of steps.
double noiseof(double steps) {
    return std::min(0.5, 1e-9 + steps * 4 * std::numeric_limits<double>::epsilon());
}

// Returns the value after `steps` steps. Without steps an infinite step does not matter.
double stepped(double start, double steps, double step) {
    return steps == 0 ? start : start + steps * step;
}

// Returns the last value of whole steps from one end toward the other, never beyond it.
double gridpoint(double from, double to, double step) {
    const double steps = (to - from) / step;
    const double whole = std::floor(steps + noiseof(std::fabs(steps)));
    return whole > steps ? to : stepped(from, whole, step);
}

// Returns the number of values from start to end, both included.
int64_t countvalues(double start, double end, double step) {
    const double steps = std::fabs(end - start) / step;
    if (start + (end < start ? -step : step) == start || std::isnan(steps))
        return 1;
    if (steps >= 9.0e18)
        return INT64_MAX;
    return static_cast<int64_t>(steps + noiseof(steps)) + 1;
}

void setelement(RANGER *ranger, double start, double end, double step) {
    ranger->remaining = countvalues(start, end, step);
    ranger->low = std::min(start, end);
    ranger->high = std::max(start, end);
    ranger->step = end < start ? -step : step;
    ranger->start = start;
    ranger->current = start;
    ranger->steps = 0;
}

void setparts(RANGER *ranger, const PARTS *parts) {
    const double step = parts->hasStep ? parts->step : 1;
    double start = parts->hasFirst ? parts->first : ranger->defaultMin;
    double end = start;
    if (parts->hasLast) {
        end = parts->last;
        if (!parts->hasFirst)
            start = gridpoint(end, ranger->defaultMin, -step);
    } else if (parts->hasDots || parts->hasStep) {
        end = gridpoint(start, ranger->defaultMax, step);
    }
    setelement(ranger, start, end, step);
}

// Returns a copy of the iterator before the first value.
RANGER restarted(const RANGER *ranger) {
    RANGER walker = *ranger;
    walker.cursor = walker.text;
    walker.failed = 0;
    return walker;
}

// Returns the current element's candidate for RANGER_closest.
double candidateof(const RANGER *ranger, double value, int mode) {
    const double steps = (value - ranger->start) / ranger->step;
    const bool lowerStep = (mode == 1) == (ranger->step > 0);
    const double k = mode == 0   ? std::round(steps)
                     : lowerStep ? std::floor(steps)
                                 : std::floor(steps + 0.999999999);
    return std::clamp(stepped(ranger->start, k, ranger->step), ranger->low, ranger->high);
}

double distanceof(double candidate, double value, int mode) {
    if (mode == 0)
        return std::fabs(value - candidate) - (candidate > value ? 1e-9 : 0);
    const double distance = mode == 1 ? value - candidate : candidate - value;
    return distance < 0 ? noCandidate : distance;
}

} // namespace

RANGER *RANGER_open(EXPR *evaluator, const char *text, double defaultMin, double defaultMax) {
    void *memory = gallocarray<RANGER>(1);
    if (memory == nullptr)
        return nullptr;
    auto *ranger = new (memory) RANGER{};
    ranger->step = 1;
    ranger->defaultMin = defaultMin;
    ranger->defaultMax = defaultMax;
    ranger->evaluator = evaluator;
    ranger->cursor = text;
    ranger->text = text;
    return ranger;
}

void RANGER_close(RANGER *ranger) {
    grelease(ranger);
}

int RANGER_getfield(RANGER *ranger, double *value) {
    const char *field = ranger->cursor;
    const char *end = fieldend(field);
    ranger->cursor = end;
    *value = 0;
    if (end == field)
        return 0;
    if (readplain(field, end, value))
        return 1;
    if (ranger->evaluator == nullptr) {
        *value = strtod(field, nullptr);
        return 1;
    }
    *value = EXPR_get(ranger->evaluator, field, end - field);
    if (EXPR_error(ranger->evaluator) != 0)
        ranger->failed = 1;
    return 1;
}

int RANGER_getrangelet(RANGER *ranger) {
    if (*ranger->cursor == 0)
        return 0;
    PARTS parts = {};
    parts.hasFirst = RANGER_getfield(ranger, &parts.first) != 0;
    if (endelement(ranger)) {
        setelement(ranger, parts.first, parts.first, 1);
        return parts.hasFirst && ranger->failed == 0 ? 1 : 0;
    }
    parts.hasDots = skippair(ranger, '.', '.');
    parts.hasLast = RANGER_getfield(ranger, &parts.last) != 0;
    skippair(ranger, '+', '=');
    skippair(ranger, '-', '=');
    parts.hasStep = RANGER_getfield(ranger, &parts.step) != 0;
    parts.step = std::fabs(parts.step);
    const bool whole = endelement(ranger) && (parts.hasFirst || parts.hasLast || parts.hasStep);
    if (!whole || (parts.hasStep && !(parts.step > 0))) {
        ranger->failed = 1;
        parts.step = 1;
    }
    setparts(ranger, &parts);
    return ranger->failed == 0 ? 1 : 0;
}

// Computes every value from the element's start, so that rounding errors do not add up.
int RANGER_next(RANGER *ranger, double *value) {
    const double last = ranger->current;
    ranger->steps += 1;
    ranger->current = ranger->start + ranger->steps * ranger->step;
    if (--ranger->remaining >= 0)
        ranger->current = std::clamp(ranger->current, ranger->low, ranger->high);
    int result = ranger->failed == 0 ? 1 : 0;
    if (ranger->remaining < 0 || ranger->current == last) {
        ranger->remaining = 0;
        result = RANGER_getrangelet(ranger);
        --ranger->remaining;
    }
    *value = ranger->current;
    return result;
}

int RANGER_info(const RANGER *ranger, double *minimum, double *maximum, int64_t *count) {
    RANGER walker = restarted(ranger);
    double smallest = walker.defaultMax;
    double largest = walker.defaultMin;
    int64_t values = 0;
    while (RANGER_getrangelet(&walker) != 0) {
        smallest = std::min(smallest, walker.low);
        largest = std::max(largest, walker.high);
        values += std::min(walker.remaining, INT64_MAX - values);
    }
    if (minimum != nullptr)
        *minimum = smallest;
    if (maximum != nullptr)
        *maximum = largest;
    if (count != nullptr)
        *count = values;
    return walker.failed == 0 ? 1 : 0;
}

double RANGER_closest(RANGER *ranger, double value, int mode) {
    RANGER walker = restarted(ranger);
    double closest = 0;
    double best = noCandidate;
    while (RANGER_getrangelet(&walker) != 0) {
        const double candidate = candidateof(&walker, value, mode);
        const double distance = distanceof(candidate, value, mode);
        if (distance < noCandidate && distance <= best) {
            best = distance;
            closest = candidate;
        }
    }
    ranger->failed = walker.failed;
    return closest;
}
