// Reads the destination and writes the output.
#include "base/options.h"
#include "range/range.h"
#include "wild/mathrules.h"
#include "wild/wildstate.h"

#include <cstring>

namespace {

struct BUILD {
    WILDMATCH *match;
    char *output;
    int64_t left;            // characters left up to the limit
    const char *destination; // position
    bool carrying;
    const char *pattern; // position in the source pattern, for case carrying
    const char *string;  // position in the string, for case carrying
    const char *stringEnd;
    int32_t nextStar; // captures of wildcards without an index
    int32_t nextQuestion;
    int32_t nextNumber;
    int32_t upper;  // insertions left to convert to upper case
    bool unmatched; // the running number was used
    char **texts;   // owned copies of the number captures, made for the first math rule
};

// The index of a destination wildcard.
struct INDEX {
    char number[WILDTEXTSIZE];
    char range[WILDTEXTSIZE]; // empty: everything
};

// Returns false when `count` more characters pass the limit.
bool reserve(BUILD *build, int64_t count) {
    if (count > build->left)
        return false;
    build->left -= count;
    return true;
}

bool put(BUILD *build, const char *text, size_t length) {
    if (!reserve(build, static_cast<int64_t>(length)))
        return false;
    memcpy(build->output, text, length);
    build->output += length;
    return true;
}

bool fill(BUILD *build, char c, int64_t count) {
    if (count <= 0)
        return true;
    if (!reserve(build, count))
        return false;
    memset(build->output, c, static_cast<size_t>(count));
    build->output += count;
    return true;
}

bool putliteral(BUILD *build) {
    const size_t length = literallength(build->destination);
    if (build->carrying) {
        if (!reserve(build, static_cast<int64_t>(length)))
            return false;
        matchCase(&build->output, &build->pattern, &build->destination, &build->string);
        return true;
    }
    const char *literal = build->destination;
    build->destination += length;
    return put(build, literal, length);
}

// Moves after a capture in the string, but not beyond its end: captures may repeat.
void skipsource(BUILD *build, int32_t length) {
    const int64_t rest = build->stringEnd - build->string;
    build->string += length < rest ? length : rest;
}

// Reads the index at the destination's position. Reports an invalid one and returns false.
bool takeindex(BUILD *build, INDEX *index) {
    index->number[0] = 0;
    index->range[0] = 0;
    if (!isleftbracket(*build->destination))
        return true;
    char text[WILDTEXTSIZE];
    const char *start = build->destination;
    const char *end = getIndex(text, start);
    if (end != nullptr) {
        build->destination = end;
        if (isValidIndex(text, index->number, index->range) != 0)
            return true;
    } else {
        end = skipindex(start, nullptr);
    }
    if (OPTverbose != 0)
        BRAX_say("WILD_match - invalid index format: %.*s\n", static_cast<int>(end - start), start);
    return false;
}

// Returns the index's capture number, or else the next in sequence.
int32_t capturenumber(const INDEX *index, int32_t *next) {
    if (index->number[0] == 0)
        return (*next)++;
    return decimalvalue(index->number, strlen(index->number));
}

// Converts the output from `start` on.
void upperinsertion(BUILD *build, char *start) {
    if (build->upper <= 0)
        return;
    for (; start < build->output; ++start)
        *start = upperchar(*start);
    --build->upper;
}

bool putstar(BUILD *build, const INDEX *index) {
    const int32_t number = capturenumber(index, &build->nextStar);
    if (number >= build->match->stars.count) {
        if (OPTverbose > 5)
            BRAX_say("WILD_match - Unmatched wildcard *[%i]\n - replacing with \"\"", number);
        return true;
    }
    const CAPTURE capture = build->match->stars.items[number];
    const char *text = build->match->string + capture.start;
    char *start = build->output;
    if (index->range[0] == 0) {
        if (!put(build, text, static_cast<size_t>(capture.length)))
            return false;
    } else {
        const int32_t first = RANGE_min(index->range, 0);
        const int32_t last = RANGE_max(index->range, WILDLASTPOSITION);
        for (int32_t i = first; i <= last && i < capture.length; ++i)
            if (RANGE_match(index->range, "", i) != 0 && !put(build, text + i, 1))
                return false;
    }
    upperinsertion(build, start);
    skipsource(build, capture.length);
    return true;
}

bool putquestion(BUILD *build, const INDEX *index) {
    const int32_t number = capturenumber(index, &build->nextQuestion);
    if (number >= build->match->questions.count) {
        if (OPTverbose > 5)
            BRAX_say("WILD_match - Unmatched wildcard ?[%i]\n - replacing with ' '", number);
        return fill(build, ' ', 1);
    }
    const CAPTURE capture = build->match->questions.items[number];
    char *start = build->output;
    if (index->range[0] != 0 && !fill(build, ' ', int64_t{RANGE_min(index->range, 0)} - 1))
        return false;
    if (!put(build, build->match->string + capture.start, 1))
        return false;
    upperinsertion(build, start);
    skipsource(build, 1);
    return true;
}

// Writes the value with zeros in at least `width` characters, sign included.
bool putvalue(BUILD *build, int32_t value, int64_t width) {
    char digits[16];
    wild_itoa(value, digits, 10);
    const size_t length = strlen(digits);
    const size_t sign = value < 0 ? 1 : 0;
    return put(build, digits, sign) && fill(build, '0', width - static_cast<int64_t>(length)) &&
           put(build, digits + sign, length - sign);
}

// Copies the number captures. Returns false when memory runs out.
bool maketexts(BUILD *build) {
    const CAPTURES *numbers = &build->match->numbers;
    for (int32_t i = 0; i < numbers->count; ++i) {
        char text[WILDTEXTSIZE];
        const CAPTURE capture = numbers->items[i];
        copytext(text, build->match->string + capture.start, static_cast<size_t>(capture.length),
                 sizeof text);
        char **longer = reallocateBuffer(build->texts, text, i + 1);
        if (longer == nullptr) {
            freeBuffer(build->texts, i);
            build->texts = nullptr;
            return false;
        }
        build->texts = longer;
    }
    return true;
}

// Stores the math rules' value of the capture. Returns false when memory runs out.
bool rulevalue(BUILD *build, int32_t number, int32_t *value) {
    if (build->texts == nullptr && !maketexts(build))
        return false;
    *value = WILD_applymathrules(build->texts, number, build->match->numbers.count);
    return true;
}

bool putnumber(BUILD *build, const INDEX *index, int64_t width) {
    const int32_t number = capturenumber(index, &build->nextNumber);
    if (number >= build->match->numbers.count) {
        if (OPTverbose > 5)
            BRAX_say("WILD_match - Unmatched wildcard #[%i]\n - replacing with %i", number,
                     current_unmatched);
        build->unmatched = true;
        return putvalue(build, current_unmatched, 0);
    }
    const CAPTURE capture = build->match->numbers.items[number];
    const char *text = build->match->string + capture.start;
    const auto length = static_cast<size_t>(capture.length);
    const bool ruled = OPTmathrules != nullptr;
    int32_t value = decimalvalue(text, length);
    if (ruled && !rulevalue(build, number, &value))
        return false;
    skipsource(build, capture.length);
    if (index->range[0] == 0) {
        if (ruled && value != WILDNORULE)
            return putvalue(build, value, width);
        return fill(build, '0', width - capture.length) && put(build, text, length);
    }
    if (RANGE_match(index->range, "", value) == 0)
        return fill(build, '0', width + capture.length);
    return fill(build, '0', width) && put(build, text, length);
}

// Writes one wildcard of the destination with its index.
int putwildcard(BUILD *build) {
    const char wildcard = *build->destination++;
    const bool isNumber = !isstarchar(wildcard) && !isquestionchar(wildcard);
    int64_t width = 1;
    for (; isNumber && isnumberchar(*build->destination); ++width)
        ++build->destination;
    INDEX index; // not cleared: its texts are large
    if (!takeindex(build, &index))
        return WILDBADINDEX;
    bool written = false;
    if (isNumber)
        written = putnumber(build, &index, width);
    else if (isstarchar(wildcard))
        written = putstar(build, &index);
    else
        written = putquestion(build, &index);
    if (isNumber && build->destination[0] == ',' && isnumberchar(build->destination[1]))
        ++build->destination;
    return written ? WILDBUILT : WILDFAILED;
}

} // namespace

void matchCase(char **output, const char **pattern, const char **destination, const char **string) {
    enum { KEEP, LOWER, UPPER } state = KEEP;
    const auto carried = [&state](char c) {
        return state == KEEP ? c : state == UPPER ? upperchar(c) : lowerchar(c);
    };
    while (iswildchar(**pattern))
        ++*pattern;
    for (; **pattern != 0 && !iswildchar(**pattern); ++*pattern) {
        const char source = **string;
        if (isletter(source))
            state = source == upperchar(source) ? UPPER : LOWER;
        if (**destination != 0 && !iswildchar(**destination))
            *(*output)++ = carried(*(*destination)++);
        if (source != 0)
            ++*string;
    }
    while (**destination != 0 && !iswildchar(**destination))
        *(*output)++ = carried(*(*destination)++);
}

int buildoutput(WILDMATCH *match, char *output, const char *destination, bool caseCarrying,
                int64_t limit) {
    BUILD build = {};
    build.match = match;
    build.output = output;
    build.left = limit;
    build.destination = destination;
    build.carrying = caseCarrying;
    build.pattern = match->pattern;
    build.string = match->string;
    build.stringEnd = match->string + strlen(match->string);
    build.upper = WILDtoupper;
    int result = WILDBUILT;
    while (result == WILDBUILT && *build.destination != 0) {
        if (iswildchar(*build.destination))
            result = putwildcard(&build);
        else if (!putliteral(&build))
            result = WILDFAILED;
    }
    *build.output = 0;
    freeBuffer(build.texts, match->numbers.count);
    if (build.unmatched)
        current_unmatched = static_cast<int32_t>(static_cast<uint32_t>(current_unmatched) + 1);
    return result;
}
