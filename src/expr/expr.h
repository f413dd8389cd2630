// The expression evaluator: arithmetic in double precision, written as text, with named
// variables, numbers in several radices, character constants and functions.
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
//     - ~ ! < > << >>     in front of an operand: negate, -v - 1, not, bits 16 to 31, bits 0
//                         to 15, shift left by one, shift right by one
//     * / % //            x / 0 and x % 0 are x; both '%' and "//" give the remainder, which
//                         has no sign of its own: -7 % 3 is 2
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
// (binary), 12d, 'AB' or "AB" (character codes, the first one highest, up to 8), ^C (control
// character), * (always 0) and names. Between double quotes backslashes escape characters,
// and <name> or <expression> stands for its value in decimal. A name that ends in '#' refers
// to a variable that need not exist yet; until it is set it stands for an unknown address,
// which can only be moved, or subtracted from itself. Before an operand '#' compares: a#-1.
//
// Messages go to standard output and give positions from 0 on. An expression that nests
// deeper than the evaluator's fixed stacks hold, and a lack of memory for what an evaluator
// owns, end the program with a message and exit status 10.
#pragma once

#include <cstdint>

struct EXPR;

// How a registered function takes its arguments, at most 16. EXPR_addfunc takes any of the
// three, cast to EXPRFUNC, with its kind's number.
using EXPRFUNC = void (*)();
using EXPRFUNC0 = double (*)(EXPR *evaluator, int32_t count);   // kind 0
using EXPRFUNC1 = double (*)(int32_t count, double *arguments); // kind 1
using EXPRFUNC2 = double (*)(double, double, double, double, double, double, double, double, double,
                             double, double, double, double, double, double,
                             double); // kind 2; arguments that are missing come as 0

// A new evaluator with the functions abs, isalpha, isupper, islower, isdigit, isxdigit,
// isalnum, isspace, ispunct, iscntrl, isprint, isgraph, isascii, tolower, toupper, toascii
// (these in any case), max, min, hypot, pow, int, round, floor, ceil, sin, cos, tan, asin,
// acos, atan, exp, log, log10, sqrt, log2 and rand. Null when there is no memory for the
// evaluator itself. The caller gives it back with EXPR_close.
EXPR *EXPR_open();

// Releases everything; null is ignored.
void EXPR_close(EXPR *evaluator);

// Creates the variable or changes its value. Returns 1.
int EXPR_set(EXPR *evaluator, const char *name, double value);

// The value of the expression. An unknown name counts as 0, a syntax error makes the whole
// value 0; both are reported on standard output and remembered for EXPR_error.
double EXPR_get(EXPR *evaluator, const char *text);

// The same for an expression that is the first `length` bytes of a text.
double EXPR_get(EXPR *evaluator, const char *text, int64_t length);

// 0, or -1 when the last EXPR_get reported an error.
int EXPR_error(const EXPR *evaluator);

// Registers a function, while fewer than 512 are registered. A name that is known already
// keeps its function. The name is not copied: it must outlive the evaluator.
void EXPR_addfunc(EXPR *evaluator, const char *name, EXPRFUNC function, int kind);
