// expr: the expression evaluator. It computes texts in double precision, with variables,
// numbers in several radices, character constants and functions. Read this file first, then
// parse.cpp, which reads a text, and math.cpp, which applies its operators.
//
//     EXPR *e = EXPR_open();
//     EXPR_set(e, "width", 40);
//     const double value = EXPR_get(e, "max(width, $20) * 2 + 1");
//     if (EXPR_error(e) == 0) ...
//     EXPR_close(e);
//
// Operators by precedence, the tightest first; equal ones group from the left:
//
//     f(x)  x[y]          function call; x[y] is x + y
//     - ~ ! < > << >>     before an operand: negate, -v - 1, not, bits 16 to 31, bits 0
//                         to 15, shift left by one, shift right by one
//     * / % //            x / 0 and x % 0 are x; '%' and "//" both give the remainder,
//                         which is never negative: -7 % 3 is 2
//     + -
//     << >>               on 64-bit integers, as all bit operators; the count modulo 64
//     < <= > >= **        "**" is the power: 2**3+1 is 16
//     == = != <> #
//     &
//     ^ ~                 exclusive or
//     | !                 inclusive or
//     && <? >?            "<?" is the smaller, ">?" the larger operand
//     || ++ --            logical or, or, exclusive or
//     ? : !: !?           a ? b : c, grouping from the left
//     ,                   gives the right operand, or separates a function's arguments
//
// Operands: 12, 1_000, 1.5, 0x1F $1F &1F 1Fh (hexadecimal), @17 17o 17q (octal), %101 101b
// (binary), 12d, 'AB' or "AB" (up to 8 character codes, the first one highest), ^C (control
// character), * (always 0) and names. Between double quotes backslashes escape characters,
// and <name> or <expression> becomes its value in decimal. A name that ends in '#' is a
// variable, created on first use. Before it is set, its value is an unknown address: numbers can
// be added to it, and it can be subtracted from itself. Before an operand '#' compares: a#-1.
//
// Messages go to standard output and count positions from 0. Nesting beyond the fixed stacks
// and a lack of memory end the program with a message and exit status 10.
#pragma once

#include <cstdint>

struct EXPR;

// The kinds of registered functions; they take at most 16 arguments. EXPR_addfunc takes
// each of them cast to EXPRFUNC.
using EXPRFUNC = void (*)();
using EXPRFUNC0 = double (*)(EXPR *evaluator, int32_t count);   // kind 0
using EXPRFUNC1 = double (*)(int32_t count, double *arguments); // kind 1
using EXPRFUNC2 = double (*)(double, double, double, double, double, double, double, double, double,
                             double, double, double, double, double, double,
                             double); // kind 2; missing arguments are 0

// Returns a new evaluator with the functions abs, isalpha, isupper, islower, isdigit, isxdigit,
// isalnum, isspace, ispunct, iscntrl, isprint, isgraph, isascii, tolower, toupper, toascii
// (these in any case), max, min, hypot, pow, int, round, floor, ceil, sin, cos, tan, asin,
// acos, atan, exp, log, log10, sqrt, log2 and rand. EXPR_close frees it. Returns null when
// there is no memory for the evaluator itself.
EXPR *EXPR_open();

// Frees the evaluator. Null is allowed.
void EXPR_close(EXPR *evaluator);

// Creates the variable or changes its value. Returns 1.
int EXPR_set(EXPR *evaluator, const char *name, double value);

// Returns the value of the expression. An unknown name counts as 0; a syntax error makes the
// whole value 0. Both print a message and set EXPR_error.
double EXPR_get(EXPR *evaluator, const char *text);

// Evaluates the first `length` bytes of a text in the same way.
double EXPR_get(EXPR *evaluator, const char *text, int64_t length);

// Returns 0, or -1 when the last EXPR_get reported an error.
int EXPR_error(const EXPR *evaluator);

// Registers a function, unless 512 are registered. A known name keeps its function. The name
// is not copied and must outlive the evaluator.
void EXPR_addfunc(EXPR *evaluator, const char *name, EXPRFUNC function, int kind);

// Truncates toward zero and saturates; NaN becomes 0.
int64_t EXPR_tointeger(double value);
