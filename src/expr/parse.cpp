// The parser: operands and operators alternate. An operator first applies the pushed ones
// that bind at least as tightly, and is then pushed itself.
#include "expr/internal.h"

#include "base/text.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr int32_t endPrecedence = -1;
constexpr uint8_t openPrecedence = 1;
constexpr uint8_t closePrecedence = 2;

struct PRECEDENCE {
    const char *characters;
    uint8_t precedence;
    EXPRCODE codes[7]; // unused ones are 0
};

constexpr PRECEDENCE binaryPrecedences[] = {
    {"", 15, {EXPRINDEX, EXPRCALLFUNCTION}},
    {"*/%", 13, {EXPRRESERVED}},
    {"+-", 12, {}},
    {"", 11, {EXPRSHIFTLEFT, EXPRSHIFTRIGHT}},
    {"<>", 10, {EXPRLESSEQUAL, EXPRGREATEREQUAL, EXPRPOWER}},
    {"=#", 9, {EXPREQUAL, EXPRNOTEQUAL}},
    {"&", 8, {}},
    {"^~", 7, {}},
    {"|!", 6, {}},
    {"", 5, {EXPRAND, EXPRMINIMUM, EXPRMAXIMUM}},
    {"", 4, {EXPROR, EXPRXOR}},
    {"?:", 3, {EXPRCHOOSE, EXPROTHERWISE}},
    {",)]", 2, {}},
    {"([;", 1, {}},
};

constexpr PRECEDENCE unaryPrecedences[] = {
    {"+-~!<>*",
     14,
     {EXPRNEGATE, EXPRCOMPLEMENT, EXPRNOT, EXPRHIGHPART, EXPRLOWPART, EXPRDOUBLE, EXPRHALVE}},
    {")],", 2, {}},
    {"([;", 1, {}},
};

struct PRECEDENCETABLE {
    uint8_t precedences[256];
};

template <size_t n> constexpr PRECEDENCETABLE maketable(const PRECEDENCE (&groups)[n]) {
    PRECEDENCETABLE table = {};
    for (const PRECEDENCE &group : groups) {
        for (const char *c = group.characters; *c != 0; ++c)
            table.precedences[static_cast<unsigned char>(*c)] = group.precedence;
        for (const EXPRCODE code : group.codes)
            table.precedences[code] = group.precedence;
    }
    table.precedences[0] = openPrecedence;
    return table;
}

constexpr PRECEDENCETABLE binaryTable = maketable(binaryPrecedences);
constexpr PRECEDENCETABLE unaryTable = maketable(unaryPrecedences);

// A position in a text; e->depth counts the open parentheses.
struct PARSER {
    EXPR *e;
    const char *text;
    const char *end;
    const char *p;
    int32_t position; // of `text`
};

int32_t positionof(const PARSER *parser, const char *p) {
    return EXPR_addposition(parser->position, p - parser->text);
}

// Returns the character at p, or 0 at the end of the text.
char charat(const PARSER *parser, const char *p) {
    return p < parser->end ? *p : '\0';
}

bool syntaxerror(const PARSER *parser, const char *p) {
    Error(parser->e, EXPRSYNTAX, positionof(parser, p));
    return false;
}

void skipblanks(PARSER *parser) {
    while (charat(parser, parser->p) == ' ')
        ++parser->p;
}

// Ends the program unless one more value fits between the stacks.
void ParseSpace(EXPR *e) {
    const auto *top = reinterpret_cast<const unsigned char *>(e->operators);
    const auto *bottom = reinterpret_cast<const unsigned char *>(e->values);
    if (top - bottom < static_cast<ptrdiff_t>(sizeof(EXPRVALUE)))
        EXPR_overflow(e);
}

void pushoperator(EXPR *e, uint8_t code, int32_t precedence) {
    ParseSpace(e);
    new (--e->operators) EXPROPERATOR{code, precedence};
}

void pushvalue(EXPR *e, double value, int32_t section, int32_t position) {
    ParseSpace(e);
    new (e->values++) EXPRVALUE{value, section, position, false};
}

// Returns the unary operator at p, or 0, and its length.
uint8_t unarycode(const PARSER *parser, const char *p, int *length) {
    const char c = charat(parser, p);
    *length = (c == '<' || c == '>') && charat(parser, p + 1) == c ? 2 : 1;
    switch (c) {
    case '-':
        return EXPRNEGATE;
    case '~':
        return EXPRCOMPLEMENT;
    case '!':
        return EXPRNOT;
    case '<':
        return *length == 2 ? EXPRDOUBLE : EXPRHIGHPART;
    case '>':
        return *length == 2 ? EXPRHALVE : EXPRLOWPART;
    default:
        return 0;
    }
}

struct PAIR {
    char first, second;
    uint8_t code;
};

constexpr PAIR pairs[] = {
    {'*', '*', EXPRPOWER},        {'<', '<', EXPRSHIFTLEFT}, {'<', '=', EXPRLESSEQUAL},
    {'<', '>', EXPRNOTEQUAL},     {'<', '?', EXPRMINIMUM},   {'>', '>', EXPRSHIFTRIGHT},
    {'>', '=', EXPRGREATEREQUAL}, {'>', '?', EXPRMAXIMUM},   {'=', '=', EXPREQUAL},
    {'!', '=', EXPRNOTEQUAL},     {'!', ':', EXPRCHOOSE},    {'!', '?', EXPROTHERWISE},
    {'&', '&', EXPRAND},          {'|', '|', EXPROR},        {'+', '+', EXPROR},
    {'-', '-', EXPRXOR},          {'%', '%', EXPRRESERVED},  {'/', '/', '%'},
};

// Returns the binary operator at p and its length. Any other character stays as it is.
uint8_t binarycode(const PARSER *parser, const char *p, int *length) {
    const char first = charat(parser, p);
    const char second = charat(parser, p + 1);
    *length = 2;
    if (second != 0 && EXPR_precedence(parser->e->binary, second) != 0) {
        for (const PAIR &pair : pairs) {
            if (pair.first == first && pair.second == second)
                return pair.code;
        }
    }
    *length = 1;
    return static_cast<uint8_t>(first);
}

// Returns whether a '#' at `end` belongs to the name before it. It does unless an operand can
// follow: a#*2 and (a#)-1 use the address of a, but a#1, a#-1 and a#%11 compare.
bool takesmark(const PARSER *parser, const char *operand, const char *end) {
    const int first = charvalue(*operand);
    const bool name = first < 0 || (first > '@' && first != '^');
    if (!name || charat(parser, end) != '#')
        return false;
    const char *p = end + 1;
    while (p < parser->end && strchr(" -+~", *p) != nullptr)
        ++p;
    return p == parser->end ||
           (strchr("(%&^", *p) == nullptr && EXPR_precedence(parser->e->binary, *p) != 0);
}

// Returns the end of the operand at p. Quotes protect blanks and operators.
const char *operandend(const PARSER *parser, const char *p) {
    if (*p == '*')
        return p + 1;
    const char *operand = p;
    char quote = 0;
    do {
        if (quote == '"' && *p == '\\' && p + 1 < parser->end)
            ++p;
        else if (quote == 0 ? *p == '"' || *p == '\'' : *p == quote)
            quote = quote == 0 ? *p : '\0';
        ++p;
    } while (p < parser->end &&
             (quote != 0 || (*p != ' ' && EXPR_precedence(parser->e->binary, *p) == 0)));
    return takesmark(parser, operand, p) ? p + 1 : p;
}

// Opens a call of the named function; its '(' follows.
bool opencall(const PARSER *parser, const char *name, int64_t length) {
    EXPR *e = parser->e;
    const uint8_t builtin = EXPR_builtin(name, length);
    if (builtin != 0) {
        pushoperator(e, builtin, EXPRCALLPRECEDENCE);
        return true;
    }
    const int32_t index = HASH_check(e->functionTable, name, length);
    if (index < 0)
        Error(e, EXPRUNDEFINED, positionof(parser, name));
    if (e->callCount == EXPRMAXCALLS)
        return syntaxerror(parser, name);
    EXPRCALL *call = &e->calls[e->callCount++];
    call->function = index < 0 ? nullptr : &e->functions[index];
    call->depth = e->depth;
    call->count = 0;
    pushoperator(e, EXPRCALLFUNCTION, EXPRCALLPRECEDENCE);
    return true;
}

// Reads a number, a name, a constant or, setting *opened, a function's name.
bool readoperand(PARSER *parser, bool *opened) {
    const char *operand = parser->p;
    const char *end = operandend(parser, operand);
    parser->p = end;
    *opened = charat(parser, end) == '(';
    if (*opened)
        return opencall(parser, operand, end - operand);
    const int32_t position = positionof(parser, operand);
    int32_t section = EXPRABSOLUTE;
    const double value = GetNum(parser->e, operand, end - operand, position, &section);
    pushvalue(parser->e, value, section, position);
    return true;
}

// Reads parentheses, unary operators and calls up to and including the next operand.
bool readprefixes(PARSER *parser) {
    EXPR *e = parser->e;
    for (;;) {
        skipblanks(parser);
        const char c = charat(parser, parser->p);
        const int32_t precedence = EXPR_precedence(e->unary, c);
        int length = 1;
        if (precedence == 0 || c == '*') {
            bool opened = false;
            if (!readoperand(parser, &opened))
                return false;
            if (!opened)
                return true;
            length = 0;
        } else if (c == '(' || c == '[') {
            pushoperator(e, static_cast<uint8_t>(c), openPrecedence);
            ++e->depth;
        } else if (precedence != EXPRUNARYPRECEDENCE) {
            return syntaxerror(parser, parser->p);
        } else if (c != '+') {
            const uint8_t code = unarycode(parser, parser->p, &length);
            pushoperator(e, code, EXPRUNARYPRECEDENCE);
        }
        parser->p += length;
    }
}

// Closes parentheses after an operand.
bool closeparentheses(PARSER *parser) {
    EXPR *e = parser->e;
    for (skipblanks(parser);; skipblanks(parser)) {
        const char c = charat(parser, parser->p);
        if (c != ')' && c != ']')
            return true;
        if (e->depth == 0)
            return syntaxerror(parser, parser->p);
        DoMath(e, closePrecedence);
        ++e->operators;
        --e->depth;
        ++parser->p;
    }
}

// Does not skip an index's '[', which also opens a parenthesis.
bool readoperator(PARSER *parser) {
    EXPR *e = parser->e;
    int length = 0;
    uint8_t code = EXPRINDEX;
    if (*parser->p != '[')
        code = binarycode(parser, parser->p, &length);
    const int32_t precedence = charvalue(*parser->p) < 0 ? 0 : e->binary[code];
    if (precedence < closePrecedence)
        return syntaxerror(parser, parser->p);
    DoMath(e, precedence);
    pushoperator(e, code, precedence);
    parser->p += length;
    return true;
}

// Reads the whole text and leaves its value alone on the stack.
bool readexpression(PARSER *parser) {
    for (;;) {
        if (!readprefixes(parser) || !closeparentheses(parser))
            return false;
        if (parser->p == parser->end)
            break;
        if (!readoperator(parser))
            return false;
    }
    if (parser->e->depth != 0)
        return syntaxerror(parser, parser->p);
    DoMath(parser->e, 0);
    return true;
}

// Returns whether the text has no operator of either table.
bool issingleoperand(const EXPR *e, const char *text, int64_t length) {
    return std::none_of(text, text + length, [e](char c) {
        return EXPR_precedence(e->unary, c) != 0 || EXPR_precedence(e->binary, c) != 0;
    });
}

} // namespace

void InitExpression(EXPR *e) {
    memcpy(e->binary, binaryTable.precedences, sizeof e->binary);
    memcpy(e->unary, unaryTable.precedences, sizeof e->unary);
}

double GetValue(EXPR *e, const char *text, int64_t length, int32_t position) {
    PARSER parser = {e, text, text + length, text, position};
    skipblanks(&parser);
    while (parser.end > parser.p && parser.end[-1] == ' ')
        --parser.end;
    const int64_t operandLength = parser.end - parser.p;
    if (operandLength != 0 && issingleoperand(e, parser.p, operandLength)) {
        int32_t section = EXPRABSOLUTE;
        return GetNum(e, parser.p, operandLength, positionof(&parser, parser.p), &section);
    }

    EXPRVALUE *values = e->values;
    EXPROPERATOR *operators = e->operators;
    const int32_t depth = e->depth;
    const int32_t outerCalls = e->outerCalls;
    const int32_t callCount = e->callCount;
    e->depth = 0;
    e->outerCalls = callCount;
    pushoperator(e, 0, endPrecedence);
    const double value = readexpression(&parser) ? values->value : 0;
    e->values = values;
    e->operators = operators;
    e->depth = depth;
    e->outerCalls = outerCalls;
    e->callCount = callCount;
    return value;
}
