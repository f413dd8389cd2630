// The parts of the evaluator, shared by its sources only.
#pragma once

#include "expr/expr.h"
#include "mem/hash.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

// Codes of the operators that are not a single character.
enum EXPRCODE : uint8_t {
    EXPRSHIFTLEFT = 0x80,
    EXPRSHIFTRIGHT,
    EXPRLESSEQUAL,
    EXPRGREATEREQUAL,
    EXPREQUAL,
    EXPRNOTEQUAL,
    EXPRAND,
    EXPROR,
    EXPRXOR,
    EXPRCHOOSE,    // "!:", the same as '?'
    EXPROTHERWISE, // "!?", the same as ':'
    EXPRINDEX,
    EXPRPOWER,
    EXPRMINIMUM,
    EXPRMAXIMUM,
    EXPRRESERVED, // "%%", which no operand pair has a meaning for
    EXPRNEGATE,
    EXPRCOMPLEMENT,
    EXPRNOT,
    EXPRHIGHPART,
    EXPRLOWPART,
    EXPRDOUBLE,
    EXPRHALVE,
    EXPRBUILTIN, // the first of the sixteen built-in functions
    EXPRLASTBUILTIN = EXPRBUILTIN + 15,
    EXPRCALLFUNCTION = 0xB4
};

constexpr int32_t EXPRUNARYPRECEDENCE = 14;
constexpr int32_t EXPRCALLPRECEDENCE = 15;

// Error numbers.
constexpr int32_t EXPRUNDEFINED = 5;
constexpr int32_t EXPRSYNTAX = 7;
constexpr int32_t EXPRTOOLONG = 10;
constexpr int32_t EXPRNOTABSOLUTE = 14;
constexpr int32_t EXPRUNTERMINATED = 27;
constexpr int32_t EXPRBADESCAPE = 29;

// Section of all values but those that depend on a name whose value is not known yet.
constexpr int32_t EXPRABSOLUTE = 0x7FFF;

constexpr int EXPRCHAINS = 2048;
constexpr int EXPRMAXFUNCTIONS = 512;
constexpr int EXPRMAXCALLS = 64;
constexpr int EXPRMAXARGUMENTS = 16;

struct EXPRVALUE {
    double value;
    int32_t section;
    int32_t position; // of the leftmost operand in the text
    bool condition;   // what the '?' before a ':' found
};

struct EXPROPERATOR {
    uint8_t code;
    int32_t precedence;
};

// How deep an expression may nest follows from these and is the same everywhere.
constexpr size_t EXPRSTACKBYTES = 1024;
static_assert(sizeof(EXPRVALUE) == 24 && sizeof(EXPROPERATOR) == 8);

struct EXPRSYMBOL {
    EXPRSYMBOL *next;
    const char *name;
    int64_t length;
    double value;
    int32_t section;
    uint32_t checksum;
};

// The start of a 64 KB block of symbols or names.
struct EXPRBLOCK {
    EXPRBLOCK *next;
    int64_t room; // bytes left at the end
    int64_t size;
};

struct EXPRFUNCTION {
    EXPRFUNC function;
    int32_t kind;
};

struct EXPRCALL {
    const EXPRFUNCTION *function; // null for an unknown one
    int32_t depth;                // of parentheses around the call
    int32_t count;
    double arguments[EXPRMAXARGUMENTS];
};

struct EXPR {
    uint8_t binary[256]; // precedences by operator code
    uint8_t unary[256];  // 14 an operator, 2 and 1 ends of an operand, 0 anything else
    int32_t radix;       // of numbers without prefix or suffix
    int32_t error;

    // Values grow up from the bottom of the stack area, operators down from its top.
    EXPRVALUE *values;       // behind the last value
    EXPROPERATOR *operators; // the last operator
    alignas(EXPRVALUE) unsigned char stack[EXPRSTACKBYTES];

    // Of the innermost GetValue: its open parentheses, and how many calls are not its own.
    int32_t depth;
    int32_t outerCalls;
    int32_t callCount;
    EXPRCALL *calls;

    EXPRSYMBOL **chains; // null while there is no symbol
    EXPRBLOCK *symbolBlocks;
    EXPRBLOCK *nameBlocks;
    int32_t sections; // handed out to names whose value is not known

    EXPRFUNCTION *functions;
    int32_t functionCount;
    HASHTABLE *functionTable; // names to positions in `functions`
};

// A character's precedence. Bytes above 127 are parts of names, never operator codes.
inline int32_t EXPR_precedence(const uint8_t *table, char c) {
    return static_cast<signed char>(c) < 0 ? 0 : table[static_cast<unsigned char>(c)];
}

// Truncates toward zero; what does not fit saturates, and what is not a number is 0.
int64_t EXPR_tointeger(double value);

// The position `offset` characters behind another, as far as one can be told.
inline int32_t EXPR_positionbehind(int32_t position, int64_t offset) {
    return static_cast<int32_t>(std::min<int64_t>(position + offset, INT32_MAX));
}

// Fills the precedence tables.
void InitExpression(EXPR *e);

// Registers the functions that every evaluator has.
void InitFunctions(EXPR *e);

// The value of the first `length` bytes of a text whose first character has this position.
// It may be called while an expression is being evaluated.
double GetValue(EXPR *e, const char *text, int64_t length, int32_t position);

// Applies the operators on the stack whose precedence is not below the incoming one.
void DoMath(EXPR *e, int32_t precedence);

// Code of the built-in function of that name, case ignored; 0 when there is none.
uint8_t EXPR_builtin(const char *name, int64_t length);
double EXPR_dobuiltin(uint8_t code, double value);

// Completes the pending call opened last with its last argument and returns its result.
double EXPR_docall(EXPR *e, double last);
void EXPR_addargument(EXPRCALL *call, double value);

// The value of one operand; *section receives its section.
double GetNum(EXPR *e, const char *text, int64_t length, int32_t position, int32_t *section);

// The value of a quoted constant, quotes included.
double GetString(EXPR *e, const char *text, int64_t length, int32_t position);

// Chain of a name is its checksum's low 11 bits.
uint32_t HashIt(const char *name, int64_t length);

// Symbols live until the evaluator is closed. ReadSymTab gives null for an unknown name.
EXPRSYMBOL *ReadSymTab(const EXPR *e, const char *name, int64_t length);
EXPRSYMBOL *AddSymTab(EXPR *e, const char *name, int64_t length, double value);
void ModSymTab(EXPRSYMBOL *symbol, double value);

// Adds a name whose value is not known: 0, in a section of its own.
EXPRSYMBOL *AddRef(EXPR *e, const char *name, int64_t length);

// A terminated copy of the name.
const char *AddName(EXPR *e, const char *name, int64_t length);

// Ends the program because the stacks would meet.
[[noreturn]] void EXPR_overflow(EXPR *e);

// Reports an error and remembers that there was one.
void Error(EXPR *e, int32_t number, int32_t position);

// Report that memory ran out and end the program; EXPR_require allocates or does that.
[[noreturn]] void EXPR_outofmemory(EXPR *e);
void *EXPR_require(EXPR *e, int64_t bytes);

// Releases the evaluator and ends the program with exit status 10.
[[noreturn]] void quit_cleanup(EXPR *e);
