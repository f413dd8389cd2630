#include "base/fields.h"

#include "base/options.h"
#include "base/text.h"

#include <cstring>

bool isblankchar(char c) {
    return charvalue(c) <= 32 && c != BRAXHARDSPACE;
}

bool islim(char c) {
    return c != 0 && strchr("({[\"`'", c) != nullptr;
}

char limtodelim(char c) {
    return c == '(' ? ')' : c == '{' ? '}' : c == '[' ? ']' : c;
}

char tosoftspace(char c) {
    return c == BRAXHARDSPACE ? ' ' : c;
}

namespace {

// A field's copy. The length counts up to BRAXFIELDSIZE, which means too long.
struct FIELD {
    char *text;
    int length;
};

void put(FIELD *field, char c) {
    if (field->text == nullptr)
        return;
    if (field->length < BRAXFIELDSIZE - 1)
        field->text[field->length] = tosoftspace(c);
    if (field->length < BRAXFIELDSIZE)
        ++field->length;
}

// Terminates the copy. Returns false, with an empty copy, when the field was too long.
bool endfield(FIELD *field, const char *source) {
    if (field->text == nullptr)
        return false;
    const bool fits = field->length < BRAXFIELDSIZE;
    if (!fits) {
        BRAX_refuse("FIELD", source);
        field->length = 0;
    }
    field->text[field->length] = 0;
    return fits;
}

// Returns whether the '=' at p is part of a rule: it begins the field or follows '+' or '-'.
bool isruleequal(const char *source, const char *p) {
    return p == source || p[-1] == '+' || p[-1] == '-';
}

const char *getfield(char *destination, const char *source, bool strip, bool keep,
                     bool bytesBelong) {
    FIELD field = {destination, 0};
    int depth = 0;
    char opening = 0;
    char closing = 0;
    char stripped = 0;
    const char *p = source;
    for (; *p != 0; ++p) {
        if (depth > 0) {
            depth += *p == closing ? -1 : *p == opening ? 1 : 0;
        } else if (islim(*p)) {
            depth = 1;
            opening = *p;
            closing = limtodelim(*p);
            if (field.length == 0 && strip)
                stripped = closing;
        } else if ((isblankchar(*p) && !(bytesBelong && charvalue(*p) < 0)) ||
                   (*p == ',' && !keep)) {
            break;
        } else if (*p == '=' && !keep && !isruleequal(source, p)) {
            if (p[1] != '=')
                break;
            put(&field, *p++);
        }
        put(&field, *p);
    }
    if (endfield(&field, source) && stripped != 0 && field.length >= 2 &&
        destination[field.length - 1] == stripped) {
        destination[field.length - 1] = 0;
        memmove(destination, destination + 1, static_cast<size_t>(field.length) - 1);
    }
    return p;
}

} // namespace

const char *BRAX_getfield(char *destination, const char *source, bool strip, bool keep) {
    return getfield(destination, source, strip, keep, false);
}

const char *BRAX_getargument(char *destination, const char *source, bool strip, bool keep) {
    return getfield(destination, source, strip, keep, true);
}

const char *BRAX_nextfield(const char *text) {
    while (*text != 0 && (isblankchar(*text) || *text == ','))
        ++text;
    return text;
}

const char *BRAX_getstropt(char *destination, const char *text, const char *, const char *, int32_t,
                           int32_t, int32_t) {
    return BRAX_getfield(destination, text, true, true);
}

namespace {

// Returns the length of a decimal number before a built-in option, or 0 without either.
size_t numberbeforeoption(const char *value) {
    size_t length = value[0] == '-' ? 1 : 0;
    const size_t digits = length;
    while (isdigitchar(value[length]))
        ++length;
    if (length == digits || value[length] == 0)
        return 0;
    return strchr(".;?bhlnrstvw", lowerchar(value[length])) != nullptr ? length : 0;
}

// Returns the number in `value`. *consumed receives its length when a split shortens it.
int32_t readnumber(char *value, const char *label, bool split, size_t *consumed) {
    BRAXerrorcount = 0;
    int32_t number = BRAX_getnum(value);
    const size_t prefix = split && BRAXerrorcount != 0 ? numberbeforeoption(value) : 0;
    if (prefix != 0) {
        value[prefix] = 0;
        *consumed = prefix;
        BRAXerrorcount = 0;
        number = BRAX_getnum(value);
    }
    if (BRAXerrorcount != 0 && OPTverbose != 0) {
        BRAX_say("brax - NUMERICAL OPTION ERROR #%d IN %s OPTION VALUE. Using %ld.\n",
                 BRAXerrorcount, label, static_cast<long>(number));
        BRAXhelpgiven = 1;
    }
    return number;
}

int32_t clampnumber(int32_t number, const char *label, int32_t min, int32_t max) {
    const bool small = min != INT32_MIN && number < min;
    const bool large = max != INT32_MAX && number > max;
    if (!small && !large)
        return number;
    const int32_t bound = small ? min : max;
    if (OPTverbose != 0) {
        BRAX_say("Value too %s for %s option. Valid range is %ld..%ld.  Using %ld.\n",
                 small ? "small" : "large", label, static_cast<long>(min), static_cast<long>(max),
                 static_cast<long>(bound));
        BRAXhelpgiven = 1;
    }
    return bound;
}

const char *getnumber(int32_t *variable, const char *text, const char *label, int32_t min,
                      int32_t max, int32_t defaultValue, bool split) {
    char value[BRAXFIELDSIZE];
    const char *end = BRAX_getfield(value, text, false, false);
    if (end > text && end[-1] == '%') {
        --end;
        value[value[0] != 0 ? strlen(value) - 1 : 0] = 0;
    }
    if (strcmp(value, "?") == 0) {
        if (OPTverbose != 0) {
            BRAX_say("Numerical Option %s = %ld. Valid range is %ld..%ld\n", label,
                     static_cast<long>(*variable), static_cast<long>(min), static_cast<long>(max));
            BRAXhelpgiven = 1;
        }
        return end;
    }
    int32_t number = defaultValue < max ? defaultValue : max;
    if (BRAX_isdigit(value) || value[0] == '\'') {
        auto consumed = static_cast<size_t>(end - text);
        number = readnumber(value, label, split, &consumed);
        end = text + consumed;
    } else {
        end = text;
    }
    number = clampnumber(number, label, min, max);
    *variable = number;
    if (OPTverbose > 5)
        BRAX_say("%s %ld\n", label, static_cast<long>(number));
    return end;
}

} // namespace

const char *BRAX_getopt2(int32_t *variable, const char *text, const char *label, int32_t min,
                         int32_t max, int32_t defaultValue) {
    return getnumber(variable, text, label, min, max, defaultValue, false);
}

const char *BRAX_getopt(int32_t *variable, const char *text, const char *label, int32_t min,
                        int32_t max) {
    return BRAX_getopt2(variable, text, label, min, max, 1);
}

const char *BRAX_getbuiltin(int32_t *variable, const char *text, const char *label, int32_t max,
                            int32_t defaultValue) {
    return getnumber(variable, text, label, 0, max, defaultValue, true);
}
