// Operands: numbers, character constants and names.
#include "expr/internal.h"

#include "base/text.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr int32_t maxDigit = 36;
constexpr int32_t maxCharacters = 8;

// The value of a digit of any radix; maxDigit for a character that is none.
int32_t digitvalue(char c) {
    if (isdigitchar(c))
        return c - '0';
    return isletter(c) ? lowerchar(c) - 'a' + 10 : maxDigit;
}

bool isdigitof(char c, int32_t radix) {
    return digitvalue(c) < radix;
}

// Passes over underscores between two digits; false when there are none to pass.
bool skipunderscores(const char **p, const char *end, int32_t radix) {
    const char *digit = *p;
    while (digit < end && *digit == '_')
        ++digit;
    if (digit == *p || digit == end || !isdigitof(*digit, radix))
        return false;
    *p = digit;
    return true;
}

// The number whose digits begin at *p, where they are left; *p is then behind them. Digits
// are collected in one integer and divided once, so that decimal fractions come out as
// exact as they can be; fraction digits beyond a double's precision are dropped.
double readdigits(const char **p, const char *end, int32_t radix) {
    constexpr double exact = 9007199254740992.0; // integers up to 2^53 are exact
    double value = 0;
    double divisor = 1;
    bool fraction = false;
    bool digitBefore = false;
    while (*p < end) {
        const char c = **p;
        if (isdigitof(c, radix)) {
            if (!fraction || value < exact / maxDigit) {
                value = value * radix + digitvalue(c);
                divisor *= fraction ? radix : 1;
            }
            digitBefore = true;
        } else if (c == '.' && !fraction) {
            fraction = true;
            digitBefore = false;
        } else if (digitBefore && skipunderscores(p, end, radix)) {
            continue;
        } else {
            break;
        }
        ++*p;
    }
    return value / divisor;
}

// The radix that a prefix selects, and the prefix's length; `radix` without one.
int32_t prefixradix(const char *text, int64_t length, int32_t radix, int64_t *prefix) {
    *prefix = 1;
    switch (text[0]) {
    case '@':
        return 8;
    case '$':
    case '&':
        return 16;
    case '%':
        return 2;
    case '0':
        *prefix = length > 1 && text[1] == 'x' && radix < 34 ? 2 : 0;
        return *prefix == 2 ? 16 : radix;
    default:
        *prefix = 0;
        return text[0] == '.' ? 10 : radix;
    }
}

// 0 for a character that is no radix suffix.
int32_t suffixradix(char c) {
    switch (lowerchar(c)) {
    case 'b':
        return 2;
    case 'd':
        return 10;
    case 'h':
        return 16;
    case 'o':
    case 'q':
        return 8;
    default:
        return 0;
    }
}

// Whether the whole text is a number, without regard to suffixes.
bool readnumber(const char *text, int64_t length, int32_t radix, double *value) {
    int64_t prefix = 0;
    radix = prefixradix(text, length, radix, &prefix);
    const char *p = text + prefix;
    *value = readdigits(&p, text + length, radix);
    return p == text + length;
}

// The value of a control character (^A); -1 for any other text.
int32_t controlvalue(const char *text, int64_t length) {
    if (length != 2 || text[0] != '^' || (text[1] != '@' && !isletter(text[1])))
        return -1;
    return upperchar(text[1]) - '@';
}

double namevalue(EXPR *e, const char *text, int64_t length, int32_t position, int32_t *section) {
    const int32_t control = controlvalue(text, length);
    if (control >= 0)
        return control;
    const bool mark = length > 1 && text[length - 1] == '#';
    if (mark)
        --length;
    const EXPRSYMBOL *symbol = ReadSymTab(e, text, length);
    if (symbol == nullptr && mark)
        symbol = AddRef(e, text, length);
    if (symbol == nullptr) {
        Error(e, EXPRUNDEFINED, position);
        return 0;
    }
    *section = symbol->section;
    return symbol->value;
}

// A character constant on its way. The first error counts, but for a missing closing quote,
// behind which nothing is what it seems.
struct CONSTANT {
    EXPR *e;
    const char *p;
    const char *end;
    uint64_t value;
    int32_t count;
    int32_t error;
};

char charat(const CONSTANT *constant, const char *p) {
    return p < constant->end ? *p : '\0';
}

void fail(CONSTANT *constant, int32_t error) {
    if (constant->error == 0)
        constant->error = error;
}

void put(CONSTANT *constant, char c) {
    constant->value = constant->value << 8 | static_cast<unsigned char>(c);
    if (++constant->count > maxCharacters) {
        constant->count = maxCharacters;
        fail(constant, EXPRTOOLONG);
    }
}

bool isoctal(char c) {
    return c >= '0' && c <= '7';
}

void readoctal(CONSTANT *constant) {
    int32_t value = 0;
    for (int digits = 0; digits < 3 && isoctal(charat(constant, constant->p)); ++digits)
        value = value * 8 + (*constant->p++ - '0');
    const char next = charat(constant, constant->p);
    if (value > 255)
        fail(constant, EXPRTOOLONG);
    if (next == '8' || next == '9')
        fail(constant, EXPRBADESCAPE);
    put(constant, static_cast<char>(value));
}

// The escape behind a backslash. A character without a meaning stands for itself.
void readescape(CONSTANT *constant) {
    const char c = charat(constant, constant->p);
    if (isoctal(c) || c == '8' || c == '9') {
        readoctal(constant);
    } else if (c != 0) {
        const char *names = "bfnrt";
        const char *name = strchr(names, c);
        put(constant, name != nullptr ? "\b\f\n\r\t"[name - names] : c);
        ++constant->p;
    }
}

// An expression up to '>', whose value is put in decimal. It holds no '>' itself, so no
// constant in it gets here again. False when it does not end.
bool readinserted(CONSTANT *constant, int32_t position) {
    const char *expression = constant->p;
    const auto room = static_cast<size_t>(constant->end - expression);
    const auto *end = static_cast<const char *>(memchr(expression, '>', room));
    if (end == nullptr)
        return false;
    const double value = GetValue(constant->e, expression, end - expression, position);
    char digits[24];
    snprintf(digits, sizeof digits, "%lld", static_cast<long long>(EXPR_tointeger(value)));
    for (const char *digit = digits; *digit != 0; ++digit)
        put(constant, *digit);
    constant->p = end + 1;
    return true;
}

// Reads behind the opening quote up to behind the closing one; false when there is none.
bool readconstant(CONSTANT *constant, char quote, const char *text, int32_t position) {
    while (constant->p < constant->end) {
        const char c = *constant->p++;
        if (c == quote) {
            if (charat(constant, constant->p) != quote)
                return true;
            ++constant->p;
            put(constant, c);
        } else if (quote == '"' && c == '\\') {
            readescape(constant);
        } else if (quote == '"' && c == '<') {
            if (!readinserted(constant, EXPR_positionbehind(position, constant->p - text)))
                return false;
        } else {
            put(constant, c);
        }
    }
    return false;
}

} // namespace

double GetString(EXPR *e, const char *text, int64_t length, int32_t position) {
    CONSTANT constant = {e, text + 1, text + length, 0, 0, 0};
    if (!readconstant(&constant, text[0], text, position)) {
        Error(e, EXPRUNTERMINATED, position);
        return 0;
    }
    if (constant.p != constant.end) {
        Error(e, EXPRSYNTAX, EXPR_positionbehind(position, constant.p - text));
        return 0;
    }
    if (constant.error != 0) {
        Error(e, constant.error, position);
        return 0;
    }
    return static_cast<double>(constant.value);
}

double GetNum(EXPR *e, const char *text, int64_t length, int32_t position, int32_t *section) {
    *section = EXPRABSOLUTE;
    const char first = text[0];
    if (first == '"' || first == '\'')
        return GetString(e, text, length, position);
    if (charvalue(first) > '@' && e->radix <= 10)
        return namevalue(e, text, length, position, section);
    if (length == 1) {
        if (isdigitof(first, e->radix))
            return digitvalue(first);
        return first == '*' ? 0 : namevalue(e, text, length, position, section);
    }
    double value = 0;
    if (readnumber(text, length, e->radix, &value))
        return value;
    const int32_t radix = isdigitchar(first) ? suffixradix(text[length - 1]) : 0;
    if (radix != 0 && readnumber(text, length - 1, radix, &value))
        return value;
    return namevalue(e, text, length, position, section);
}
