// Shared by the sources of the evaluator only.
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
    EXPRRESERVED, // "%%", always a syntax error
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

// Section of every value that does not depend on an unknown address.
constexpr int32_t EXPRABSOLUTE = 0x7FFF;

constexpr int EXPRCHAINS = 2048;
constexpr int EXPRMAXFUNCTIONS = 512;
constexpr int EXPRMAXCALLS = 64;
constexpr int EXPRMAXARGUMENTS = 16;

struct EXPRVALUE {
    double value;
    int32_t section;
    int32_t position; // of the leftmost operand in the text
    bool condition;   // result of the '?' for the ':' after it
};

struct EXPROPERATOR {
    uint8_t code;
    int32_t precedence;
};

// These sizes limit how deep an expression may nest, equally on every platform.
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
    int64_t left; // unused bytes at the end
    int64_t size;
};

struct EXPRFUNCTION {
    EXPRFUNC function;
    int32_t kind;
};

struct EXPRCALL {
    const EXPRFUNCTION *function; // null for an unknown one
    int32_t depth;                // parentheses around the call
    int32_t count;
    double arguments[EXPRMAXARGUMENTS];
};

struct EXPR {
    uint8_t binary[256]; // precedences by operator code
    uint8_t unary[256];  // 14 for operators, 2 and 1 for parentheses and ',', 0 otherwise
    uint32_t radix;      // of numbers without prefix or suffix

    // Values grow up from the bottom of the stack area, operators down from its top.
    EXPRVALUE *values;       // after the last value
    EXPROPERATOR *operators; // the last operator
    alignas(EXPRVALUE) unsigned char stack[EXPRSTACKBYTES];

    int32_t error;

    // The innermost GetValue's open parentheses, and the number of pending calls before it.
    int32_t depth;
    int32_t outerCalls;
    int32_t callCount;
    EXPRCALL *calls;

    EXPRSYMBOL **chains; // null while there is no symbol
    EXPRBLOCK *symbolBlocks;
    EXPRBLOCK *nameBlocks;
    int32_t sections; // number of unknown addresses

    EXPRFUNCTION *functions;
    int32_t functionCount;
    HASHTABLE *functionTable; // names to positions in `functions`
};

// Returns a character's precedence. Bytes above 127 belong to names.
inline int32_t EXPR_precedence(const uint8_t *table, char c) {
    return static_cast<signed char>(c) < 0 ? 0 : table[static_cast<unsigned char>(c)];
}

// Returns the position `offset` characters after another; saturates.
inline int32_t EXPR_addposition(int32_t position, int64_t offset) {
    return static_cast<int32_t>(std::min<int64_t>(position + offset, INT32_MAX));
}

// Fills the precedence tables.
void InitExpression(EXPR *e);

// Registers the functions that every evaluator has.
void InitFunctions(EXPR *e);

// Returns the value of the first `length` bytes of a text that begins at the position. May
// be called during an evaluation.
double GetValue(EXPR *e, const char *text, int64_t length, int32_t position);

// Applies the operators on the stack down to the first one of lower precedence.
void DoMath(EXPR *e, int32_t precedence);

// Returns the code of a built-in function, case ignored, or 0 for another name.
uint8_t EXPR_builtin(const char *name, int64_t length);
double EXPR_dobuiltin(uint8_t code, double value);

// Ends the innermost pending call with its last argument and returns its result.
double EXPR_docall(EXPR *e, double last);
void EXPR_addargument(EXPRCALL *call, double value);

// Returns the value of one operand; *section receives its section.
double GetNum(EXPR *e, const char *text, int64_t length, int32_t position, int32_t *section);

// Returns the value of a character constant with its quotes.
double GetString(EXPR *e, const char *text, int64_t length, int32_t position);

// Returns a name's chain: the low 11 bits of its checksum.
uint32_t HashIt(const char *name, int64_t length);

// The evaluator owns its symbols. ReadSymTab returns null for an unknown name.
EXPRSYMBOL *ReadSymTab(const EXPR *e, const char *name, int64_t length);
EXPRSYMBOL *AddSymTab(EXPR *e, const char *name, int64_t length, double value);
void ModSymTab(EXPRSYMBOL *symbol, double value);

// Adds an unknown address: a name with value 0 and a section of its own.
EXPRSYMBOL *AddRef(EXPR *e, const char *name, int64_t length);

// Returns a terminated copy of the name.
const char *AddName(EXPR *e, const char *name, int64_t length);

// Reports that the stacks would meet and ends the program.
[[noreturn]] void EXPR_overflow(EXPR *e);

// Reports an error and sets the error flag.
void Error(EXPR *e, int32_t number, int32_t position);

// EXPR_outofmemory reports and ends the program; so does EXPR_require when galloc fails.
[[noreturn]] void EXPR_outofmemory(EXPR *e);
void *EXPR_require(EXPR *e, int64_t bytes);

// Frees the evaluator and ends the program with exit status 10.
[[noreturn]] void quit_cleanup(EXPR *e);
