#include "range/range.h"

#include "base/fields.h"
#include "base/options.h"

#include <cstdlib>

namespace {

bool israngepunctuation(const char *p) {
    return *p == ',' || (*p == '.' && p[1] == '.') || (*p == '+' && p[1] == '=');
}

// A field's copy and the bracketed part at the current position.
struct RANGEFIELD {
    char *output;
    int length; // up to BRAXFIELDSIZE, which means too long
    int depth;
    char opening;
    bool enclosed; // brackets around the whole field, not copied
};

void put(RANGEFIELD *field, char c) {
    if (field->length < BRAXFIELDSIZE - 1)
        field->output[field->length] = c;
    if (field->length < BRAXFIELDSIZE)
        ++field->length;
}

// Puts a character of a bracketed part. Returns true when it closes an enclosed field.
bool putinside(RANGEFIELD *field, char c) {
    if (c == limtodelim(field->opening)) {
        if (--field->depth == 0 && field->enclosed)
            return true;
    } else if (c == field->opening) {
        ++field->depth;
    }
    put(field, c);
    return false;
}

} // namespace

const char *BRAX_getrangefield(char *output, const char *text, bool strip, bool stop) {
    RANGEFIELD field = {output, 0, 0, 0, false};
    const char *p = text;
    for (; *p != 0; ++p) {
        if (field.depth > 0) {
            if (putinside(&field, *p)) {
                ++p;
                break;
            }
        } else if (islim(*p)) {
            field.depth = 1;
            field.opening = *p;
            field.enclosed = strip && field.length == 0;
            if (!field.enclosed)
                put(&field, *p);
        } else if (isblankchar(*p) || (stop && israngepunctuation(p))) {
            break;
        } else {
            put(&field, *p);
        }
    }
    if (field.length == BRAXFIELDSIZE) {
        BRAX_refuse("FIELD", text);
        field.length = 0;
    }
    output[field.length] = 0;
    return p;
}

const char *BRAX_getrangeopt(char *output, const char *text, const char *label, int32_t lower,
                             int32_t upper) {
    const char *end = BRAX_getrangefield(output, text, true, false);
    if (upper != RANGEUNLIMITED && RANGE_check(output, lower, upper) == 0) {
        BRAX_say("getrangeopt - RANGE OPTION VALUE OUT OF RANGE.  %s.\n"
                 "SPECIFIED %s. VALID RANGE IS %ld..%ld\n",
                 label, output, static_cast<long>(lower), static_cast<long>(upper));
        exit(10);
    }
    return end;
}
