// The sixteen built-in functions, which have operator codes, and the registered ones.
#include "expr/internal.h"

#include "base/text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

enum BUILTIN {
    ABS,
    ISALPHA,
    ISUPPER,
    ISLOWER,
    ISDIGIT,
    ISXDIGIT,
    ISALNUM,
    ISSPACE,
    ISPUNCT,
    ISCNTRL,
    ISPRINT,
    ISGRAPH,
    ISASCII,
    TOLOWER,
    TOUPPER,
    TOASCII,
    BUILTINCOUNT
};

struct BUILTINNAME {
    std::string_view name;
    int (*test)(int); // null unless a class test
};

constexpr BUILTINNAME builtins[BUILTINCOUNT] = {
    {"abs", nullptr},     {"isalpha", isalpha},   {"isupper", isupper}, {"islower", islower},
    {"isdigit", isdigit}, {"isxdigit", isxdigit}, {"isalnum", isalnum}, {"isspace", isspace},
    {"ispunct", ispunct}, {"iscntrl", iscntrl},   {"isprint", isprint}, {"isgraph", isgraph},
    {"isascii", nullptr}, {"tolower", nullptr},   {"toupper", nullptr}, {"toascii", nullptr},
};

// Moves a value between `first` and `last` by the distance; other values stay.
double movecase(double value, char first, char last, double distance) {
    return value >= first && value <= last ? value + distance : value;
}

double maximum(int32_t count, double *arguments) {
    return *std::max_element(arguments, arguments + count);
}

double minimum(int32_t count, double *arguments) {
    return *std::min_element(arguments, arguments + count);
}

double hypotenuse(int32_t count, double *arguments) {
    double result = 0;
    for (int32_t i = 0; i < count; ++i)
        result = std::hypot(result, arguments[i]);
    return result;
}

double truncated(double value) {
    return static_cast<double>(EXPR_tointeger(value));
}

double rounded(double value) {
    return value >= 0 ? std::floor(value + 0.5) : -std::floor(-value + 0.5);
}

double logarithm2(double value) {
    return std::log(value) / std::log(2.0);
}

double randomnumber(double value) {
    return rand() / static_cast<double>(RAND_MAX) * (value == 0 ? 4294967295.0 : value);
}

// Kind 2 functions of the first argument, and of the first two.
template <double (*F)(double)>
double first(double a, double, double, double, double, double, double, double, double, double,
             double, double, double, double, double, double) {
    return F(a);
}

template <double (*F)(double, double)>
double firsttwo(double a, double b, double, double, double, double, double, double, double, double,
                double, double, double, double, double, double) {
    return F(a, b);
}

void add(EXPR *e, const char *name, EXPRFUNC1 function) {
    EXPR_addfunc(e, name, reinterpret_cast<EXPRFUNC>(function), 1);
}

void add(EXPR *e, const char *name, EXPRFUNC2 function) {
    EXPR_addfunc(e, name, reinterpret_cast<EXPRFUNC>(function), 2);
}

double callseparately(EXPRFUNC2 function, const EXPRCALL *call) {
    double a[EXPRMAXARGUMENTS] = {};
    memcpy(a, call->arguments, static_cast<size_t>(call->count) * sizeof a[0]);
    return function(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11], a[12],
                    a[13], a[14], a[15]);
}

} // namespace

void EXPR_addfunc(EXPR *evaluator, const char *name, EXPRFUNC function, int kind) {
    if (evaluator->functionCount >= EXPRMAXFUNCTIONS)
        return;
    evaluator->functions[evaluator->functionCount] = {function, kind};
    HASH_add(evaluator->functionTable, name, evaluator->functionCount++);
}

void InitFunctions(EXPR *e) {
    add(e, "max", maximum);
    add(e, "min", minimum);
    add(e, "hypot", hypotenuse);
    add(e, "pow", firsttwo<std::pow>);
    add(e, "int", first<truncated>);
    add(e, "round", first<rounded>);
    add(e, "floor", first<std::floor>);
    add(e, "ceil", first<std::ceil>);
    add(e, "sin", first<std::sin>);
    add(e, "cos", first<std::cos>);
    add(e, "tan", first<std::tan>);
    add(e, "asin", first<std::asin>);
    add(e, "acos", first<std::acos>);
    add(e, "atan", first<std::atan>);
    add(e, "exp", first<std::exp>);
    add(e, "log", first<std::log>);
    add(e, "log10", first<std::log10>);
    add(e, "sqrt", first<std::sqrt>);
    add(e, "log2", first<logarithm2>);
    add(e, "rand", first<randomnumber>);
}

uint8_t EXPR_builtin(const char *name, int64_t length) {
    const auto size = static_cast<size_t>(length);
    for (int i = 0; i < BUILTINCOUNT; ++i)
        if (builtins[i].name.size() == size && strnicmp(builtins[i].name.data(), name, size) == 0)
            return static_cast<uint8_t>(EXPRBUILTIN + i);
    return 0;
}

double EXPR_dobuiltin(uint8_t code, double value) {
    const int function = code - EXPRBUILTIN;
    const int64_t whole = EXPR_tointeger(value);
    switch (function) {
    case ABS:
        return std::fabs(value);
    case ISASCII:
        return (whole & ~INT64_C(127)) == 0 ? 1 : 0;
    case TOLOWER:
        return movecase(value, 'A', 'Z', 'a' - 'A');
    case TOUPPER:
        return movecase(value, 'a', 'z', 'A' - 'a');
    case TOASCII:
        return static_cast<double>(whole & 127);
    default:
        return whole >= 0 && whole <= 255 && builtins[function].test(static_cast<int>(whole)) != 0
                   ? 1
                   : 0;
    }
}

void EXPR_addargument(EXPRCALL *call, double value) {
    if (call->count < EXPRMAXARGUMENTS)
        call->arguments[call->count++] = value;
}

double EXPR_docall(EXPR *e, double last) {
    EXPRCALL *call = &e->calls[e->callCount - 1];
    EXPR_addargument(call, last);
    double result = 0;
    if (call->function != nullptr) {
        const EXPRFUNC function = call->function->function;
        switch (call->function->kind) {
        case 0:
            result = reinterpret_cast<EXPRFUNC0>(function)(e, call->count);
            break;
        case 1:
            result = reinterpret_cast<EXPRFUNC1>(function)(call->count, call->arguments);
            break;
        default:
            result = callseparately(reinterpret_cast<EXPRFUNC2>(function), call);
        }
    }
    --e->callCount;
    return result;
}
