// Operands: numbers, character constants and names.
#include "expr/internal.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr uint32_t maxDigit = 36;
constexpr int32_t maxCharacters = 8;

// Returns the value of a digit of any radix, or maxDigit for another character.
uint32_t digitvalue(char c) {
    if (isdigitchar(c))
        return static_cast<uint32_t>(c - '0');
    return isletter(c) ? static_cast<uint32_t>(lowerchar(c) - 'a' + 10) : maxDigit;
}

bool isdigitof(char c, uint32_t radix) {
    return digitvalue(c) < radix;
}

// Skips underscores before a digit. Returns false, without a move, when there are none.
bool skipunderscores(const char **p, const char *end, uint32_t radix) {
    const char *digit = *p;
    while (digit < end && *digit == '_')
        ++digit;
    if (digit == *p || digit == end || !isdigitof(*digit, radix))
        return false;
    *p = digit;
    return true;
}

// Returns the number at *p and moves *p after its digits. One division at the end keeps
// decimal fractions exact; fraction digits beyond a double's precision are dropped.
double readdigits(const char **p, const char *end, uint32_t radix) {
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

// Reads a number without a suffix. Returns false when the text goes on after it.
bool readnumber(const char *text, int64_t length, uint32_t radix, double *value) {
    size_t prefix = 0;
    radix = prefixradix(text, radix, &prefix);
    const char *p = text + prefix;
    *value = readdigits(&p, text + length, radix);
    return p == text + length;
}

// Returns the value of a control character (^A), or -1 for any other text.
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

// A character constant being read. Its first error is reported, unless the closing quote is
// missing.
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

// Reads an escape, after its backslash.
void readescape(CONSTANT *constant) {
    const char c = charat(constant, constant->p);
    if (isoctal(c) || c == '8' || c == '9') {
        readoctal(constant);
    } else if (c != 0) {
        put(constant, escapedchar(c));
        ++constant->p;
    }
}

// Reads an expression up to '>' and puts its value in decimal. The expression has no '>', so
// this does not recurse. Returns false when the '>' is missing.
bool readinserted(CONSTANT *constant, int32_t position) {
    const char *expression = constant->p;
    const char *end = std::find(expression, constant->end, '>');
    if (end == constant->end)
        return false;
    const double value = GetValue(constant->e, expression, end - expression, position);
    char digits[24];
    snprintf(digits, sizeof digits, "%lld", static_cast<long long>(EXPR_tointeger(value)));
    for (const char *digit = digits; *digit != 0; ++digit)
        put(constant, *digit);
    constant->p = end + 1;
    return true;
}

// Reads from after the opening quote to after the closing one. Returns false without one.
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
            if (!readinserted(constant, EXPR_addposition(position, constant->p - text)))
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
        Error(e, EXPRSYNTAX, EXPR_addposition(position, constant.p - text));
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
    const uint32_t radix = isdigitchar(first) ? suffixradix(text[length - 1]) : 0;
    if (radix != 0 && readnumber(text, length - 1, radix, &value))
        return value;
    return namevalue(e, text, length, position, section);
}
