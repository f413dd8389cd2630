#include "range/range.h"

#include "base/text.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// One element, its bounds in order. A bound missing beside a text bound is open: every text
// passes it.
struct ELEMENT {
    RANGE minimum;
    RANGE maximum;
    int64_t step; // above 0
    bool negated;
    bool openBelow;
    bool openAbove;
};

// The results so far; they saturate at 32 bits only at the end.
struct PARSE {
    RANGE test;
    bool testFits; // false: the test text is too long to compare
    int32_t lower;
    int32_t upper;
    int32_t direction;
    bool matched = false;
    bool endless = false; // unlimited count; minimum and maximum are final
    bool hasClosest = false;
    int32_t malformed = 0;
    int64_t count = 0;
    int64_t minimum = RANGEUNLIMITED;
    int64_t maximum = RANGENOLOWER;
    int64_t closest;
};

void setendless(PARSE *parse) {
    parse->endless = true;
    parse->minimum = RANGENOLOWER;
    parse->maximum = RANGEUNLIMITED;
}

void offer(PARSE *parse, int64_t candidate) {
    const int64_t number = parse->test.value;
    const bool further =
        parse->direction == 0 ||
        (parse->direction > 0 ? candidate > parse->closest : candidate < parse->closest);
    if (!parse->hasClosest ||
        (further && std::abs(candidate - number) < std::abs(parse->closest - number))) {
        parse->closest = candidate;
        parse->hasClosest = true;
    }
}

void alloweverything(PARSE *parse) {
    setendless(parse);
    parse->matched = true;
    offer(parse, parse->test.value);
}

void readbound(RANGE *bound, const char *part, int32_t defaultValue) {
    const bool numeric = rangeisnumeric(part) != 0;
    bound->value = part[0] == 0 ? defaultValue : numeric ? rangenumber(part) : 0;
    copytext(bound->text, numeric ? "" : part, sizeof bound->text);
}

// Returns false when the step is 0 or too long.
bool readstep(ELEMENT *element, const char *text) {
    char part[RANGEPARTSIZE];
    if (!rangestepstr(part, text))
        return false;
    element->step = rangeisnumeric(part) != 0 ? std::abs(int64_t{rangenumber(part)}) : 1;
    return element->step != 0;
}

// Returns false when the element is malformed.
bool readelement(const PARSE *parse, const char *text, ELEMENT *element) {
    element->negated = text[0] == '!' && text[1] != 0;
    if (element->negated)
        ++text;
    char minimum[RANGEPARTSIZE];
    char maximum[RANGEPARTSIZE];
    if (!rangeminstr(minimum, text) || !rangemaxstr(maximum, text) || !readstep(element, text))
        return false;
    readbound(&element->minimum, minimum, parse->lower == RANGENOLOWER ? 0 : parse->lower);
    readbound(&element->maximum, maximum, parse->upper);
    const bool textBelow = element->minimum.text[0] != 0;
    const bool textAbove = element->maximum.text[0] != 0;
    element->openBelow = textAbove && minimum[0] == 0;
    element->openAbove = textBelow && maximum[0] == 0;
    if (element->openBelow && element->minimum.value > element->maximum.value)
        element->minimum.value = element->maximum.value;
    if (element->openBelow || element->openAbove)
        return true;
    if (textBelow != textAbove)
        return false;
    if (rangecompare(&element->minimum, &element->maximum) > 0)
        rangeswap(&element->minimum, &element->maximum);
    return true;
}

void extend(PARSE *parse, int64_t smallest, int64_t largest) {
    parse->minimum = std::min(parse->minimum, smallest);
    parse->maximum = std::max(parse->maximum, largest);
}

void countplain(PARSE *parse, const ELEMENT *element) {
    const int64_t span = static_cast<int64_t>(element->maximum.value) - element->minimum.value;
    parse->count += span / element->step + 1;
    extend(parse, element->minimum.value, element->maximum.value - span % element->step);
}

void countnegated(PARSE *parse, const ELEMENT *element) {
    const int64_t minimum = element->minimum.value;
    const int64_t maximum = element->maximum.value;
    const int64_t lower = parse->lower;
    const int64_t upper = parse->upper;
    parse->count += (upper - lower) - (maximum - minimum) / element->step;
    int64_t largest = upper;
    if (maximum == upper && element->step == 1)
        largest = minimum != lower ? minimum - 1 : RANGENOLOWER;
    else if (maximum == upper && (upper - minimum) % element->step == 0)
        largest = upper - 1;
    int64_t smallest = lower;
    if (minimum == lower && element->step == 1)
        smallest = maximum != upper ? maximum + 1 : RANGEUNLIMITED;
    else if (minimum == lower)
        smallest = lower + 1;
    extend(parse, smallest, largest);
}

bool allows(const PARSE *parse, const ELEMENT *element) {
    if (!parse->testFits)
        return false;
    const RANGE *test = &parse->test;
    const int64_t offset = static_cast<int64_t>(test->value) - element->minimum.value;
    const bool inside = offset % element->step == 0 &&
                        (element->openBelow || rangecompare(test, &element->minimum) >= 0) &&
                        (element->openAbove || rangecompare(test, &element->maximum) <= 0);
    return inside != element->negated;
}

// Returns one of the values below and above the number, by the direction.
int64_t choose(const PARSE *parse, int64_t below, int64_t above) {
    if (parse->direction != 0)
        return parse->direction < 0 ? below : above;
    const int64_t number = parse->test.value;
    return std::abs(above - number) <= std::abs(below - number) ? above : below;
}

int64_t closestplain(const PARSE *parse, const ELEMENT *element) {
    const int64_t number = parse->test.value;
    const int64_t minimum = element->minimum.value;
    const int64_t maximum = element->maximum.value;
    if (number < minimum)
        return minimum;
    if (parse->matched)
        return number;
    if (number > maximum)
        return maximum - (maximum - minimum) % element->step;
    const int64_t below = number - (number - minimum) % element->step;
    const int64_t above = below + element->step;
    return choose(parse, below, above <= maximum ? above : below);
}

int64_t closestnegated(const PARSE *parse, const ELEMENT *element) {
    const int64_t number = parse->test.value;
    const int64_t minimum = element->minimum.value;
    const int64_t maximum = element->maximum.value;
    if (parse->matched || number < minimum || number > maximum)
        return number;
    const int64_t below = (element->step == 1 ? minimum : number) - 1;
    const int64_t above = (element->step == 1 ? maximum : number) + 1;
    return choose(parse, below < RANGENOLOWER ? RANGENOLOWER : below,
                  above > RANGEUNLIMITED ? RANGEUNLIMITED : above);
}

void parseelement(PARSE *parse, const char *spec, size_t length) {
    char text[RANGEPARTSIZE];
    const bool fits = copytext(text, spec, length, sizeof text);
    if (text[0] == 0 || strcmp(text, "..") == 0 || strcmp(text, "+=") == 0) {
        alloweverything(parse);
        return;
    }
    ELEMENT element; // not cleared: its texts are large
    if (!fits || !readelement(parse, text, &element)) {
        ++parse->malformed;
        setendless(parse);
        return;
    }
    if (strcmp(element.minimum.text, element.maximum.text) != 0)
        parse->endless = true;
    if (!parse->endless && element.negated)
        countnegated(parse, &element);
    else if (!parse->endless)
        countplain(parse, &element);
    if (!parse->matched)
        parse->matched = allows(parse, &element);
    offer(parse, element.negated ? closestnegated(parse, &element) : closestplain(parse, &element));
}

void parseelements(PARSE *parse, const char *spec) {
    do {
        const size_t length = strcspn(spec, ",");
        parseelement(parse, spec, length);
        spec += length;
    } while (*spec++ == ',' && *spec != 0);
}

PARSE parsed(const char *spec, const char *text, int32_t number, int32_t direction, int32_t lower,
             int32_t upper) {
    PARSE parse; // not cleared: its text is large
    parse.test.value = number;
    parse.testFits = copytext(parse.test.text, text != nullptr ? text : "", sizeof parse.test.text);
    parse.lower = lower;
    parse.upper = upper;
    parse.direction = direction;
    parse.closest = number >= 0 ? RANGEUNLIMITED : RANGENOLOWER;
    if (spec[0] == 0)
        alloweverything(&parse);
    else
        parseelements(&parse, spec);
    return parse;
}

} // namespace

int rangeparse(const char *spec, const char *text, int32_t number, int32_t *malformed,
               int32_t *count, int32_t *minimum, int32_t *maximum, int32_t *closest, int32_t lower,
               int32_t upper) {
    const int32_t direction = closest != nullptr ? *closest : 0;
    const PARSE parse = parsed(spec, text, number, direction, lower, upper);
    const auto set = [](int32_t *result, int64_t value) {
        if (result != nullptr)
            *result = toint32(value);
    };
    set(malformed, parse.malformed);
    set(count, parse.endless ? RANGEUNLIMITED : parse.count);
    set(minimum, parse.minimum);
    set(maximum, parse.maximum);
    set(closest, parse.closest);
    return parse.matched && parse.malformed == 0 ? 1 : 0;
}

int RANGE_match(const char *spec, const char *text, int32_t number) {
    return rangeparse(spec, text, number, nullptr, nullptr, nullptr, nullptr, nullptr, RANGENOLOWER,
                      RANGEUNLIMITED);
}

int32_t RANGE_min(const char *spec, int32_t lower) {
    return std::max(toint32(parsed(spec, nullptr, 0, 0, lower, RANGEUNLIMITED).minimum), lower);
}

int32_t RANGE_max(const char *spec, int32_t upper) {
    return std::min(toint32(parsed(spec, nullptr, 0, 0, RANGENOLOWER, upper).maximum), upper);
}

int RANGE_check(const char *spec, int32_t lower, int32_t upper) {
    return parsed(spec, nullptr, 0, 0, lower, upper).malformed == 0 ? 1 : 0;
}

int32_t RANGE_count(const char *spec, int32_t lower, int32_t upper) {
    const PARSE parse = parsed(spec, nullptr, 0, 0, lower, upper);
    const int64_t span = std::abs(int64_t{upper} - lower + 1);
    return toint32(parse.endless ? span : std::min(parse.count, span));
}

int32_t RANGE_constrain(const char *spec, int32_t number, int32_t direction) {
    return toint32(parsed(spec, nullptr, number, direction, RANGENOLOWER, RANGEUNLIMITED).closest);
}
