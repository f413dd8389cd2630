// Applies operators to the values on the stack.
#include "expr/internal.h"

#include <cmath>

namespace {

// Divides by the absolute value; the remainder is never negative.
double remainderof(double left, double right) {
    const double divisor = std::fabs(right);
    return divisor == 0 ? left : left - divisor * std::floor(left / divisor);
}

double shifted(double left, double right, bool toLeft) {
    const int64_t value = EXPR_tointeger(left);
    const auto count = static_cast<uint64_t>(EXPR_tointeger(right)) & 63;
    if (toLeft)
        return static_cast<double>(static_cast<int64_t>(static_cast<uint64_t>(value) << count));
    return static_cast<double>(value >> count);
}

double bitwise(uint8_t code, double left, double right) {
    const int64_t a = EXPR_tointeger(left);
    const int64_t b = EXPR_tointeger(right);
    return static_cast<double>(code == '&' ? a & b : code == '|' || code == '!' ? a | b : a ^ b);
}

double truth(bool value) {
    return value ? 1 : 0;
}

// Returns the result of two values; *valid becomes false for a code without a meaning.
double arithmetic(uint8_t code, double left, double right, bool *valid) {
    switch (code) {
    case '*':
        return left * right;
    case '/':
        return right == 0 ? left : left / right;
    case '%':
        return remainderof(left, right);
    case '+':
    case EXPRINDEX:
        return left + right;
    case '-':
        return left - right;
    case EXPRSHIFTLEFT:
    case EXPRSHIFTRIGHT:
        return shifted(left, right, code == EXPRSHIFTLEFT);
    case '<':
        return truth(left < right);
    case EXPRLESSEQUAL:
        return truth(left <= right);
    case '>':
        return truth(left > right);
    case EXPRGREATEREQUAL:
        return truth(left >= right);
    case EXPRPOWER:
        return std::pow(left, right);
    case '=':
    case EXPREQUAL:
        return truth(left == right);
    case '#':
    case EXPRNOTEQUAL:
        return truth(left != right);
    case '&':
    case '^':
    case '~':
    case '|':
    case '!':
        return bitwise(code, left, right);
    case EXPRAND:
        return truth(left != 0 && right != 0);
    case EXPROR:
        return truth(left != 0 || right != 0);
    case EXPRXOR:
        return truth((left != 0) != (right != 0));
    case EXPRMINIMUM:
        return left < right ? left : right;
    case EXPRMAXIMUM:
        return left > right ? left : right;
    default:
        *valid = false;
        return 0;
    }
}

void notabsolute(EXPR *e, EXPRVALUE *value, int32_t position) {
    Error(e, EXPRNOTABSOLUTE, position);
    value->section = EXPRABSOLUTE;
}

// Sets the result's section, in `left`, when an operand is an unknown address. Adding a
// number keeps the section; subtracting within one section gives a number.
void joinsections(EXPR *e, uint8_t code, EXPRVALUE *left, const EXPRVALUE *right) {
    const bool rightAbsolute = right->section == EXPRABSOLUTE;
    if (code == '+' || code == EXPRINDEX) {
        if (left->section == EXPRABSOLUTE)
            left->section = right->section;
        else if (!rightAbsolute)
            notabsolute(e, left, right->position);
    } else if (code == '-') {
        if (left->section == right->section)
            left->section = EXPRABSOLUTE;
        else if (!rightAbsolute)
            notabsolute(e, left, right->position);
    } else {
        notabsolute(e, left, left->section == EXPRABSOLUTE ? right->position : left->position);
    }
}

// Returns the innermost pending call if its parentheses are the innermost ones, else null.
EXPRCALL *currentcall(const EXPR *e) {
    if (e->callCount == e->outerCalls)
        return nullptr;
    EXPRCALL *call = &e->calls[e->callCount - 1];
    return call->depth + 1 == e->depth ? call : nullptr;
}

// Leaves the result in `left`.
void dobinary(EXPR *e, uint8_t code, EXPRVALUE *left, const EXPRVALUE *right) {
    if (left->section != EXPRABSOLUTE || right->section != EXPRABSOLUTE)
        joinsections(e, code, left, right);
    switch (code) {
    case '?':
    case EXPRCHOOSE:
        left->condition = left->value != 0;
        left->value = right->value;
        break;
    case ':':
    case EXPROTHERWISE:
        left->value = left->condition ? left->value : right->value;
        break;
    case ',':
        if (EXPRCALL *call = currentcall(e); call != nullptr)
            EXPR_addargument(call, left->value);
        left->value = right->value;
        break;
    default: {
        bool valid = true;
        left->value = arithmetic(code, left->value, right->value, &valid);
        if (!valid)
            Error(e, EXPRSYNTAX, left->position);
    }
    }
}

double unaryresult(EXPR *e, uint8_t code, double value) {
    switch (code) {
    case EXPRNEGATE:
        return -value;
    case EXPRCOMPLEMENT:
        return -value - 1;
    case EXPRNOT:
        return truth(value == 0);
    case EXPRHIGHPART:
        return static_cast<double>(EXPR_tointeger(value) >> 16 & 0xFFFF);
    case EXPRLOWPART:
        return static_cast<double>(EXPR_tointeger(value) & 0xFFFF);
    case EXPRDOUBLE:
        return shifted(value, 1, true);
    case EXPRHALVE:
        return shifted(value, 1, false);
    case EXPRCALLFUNCTION:
        return EXPR_docall(e, value);
    default:
        return EXPR_dobuiltin(code, value);
    }
}

void dounary(EXPR *e, uint8_t code, EXPRVALUE *operand) {
    if (operand->section != EXPRABSOLUTE)
        notabsolute(e, operand, operand->position);
    operand->value = unaryresult(e, code, operand->value);
}

} // namespace

int64_t EXPR_tointeger(double value) {
    constexpr double limit = 9223372036854775808.0;
    if (value >= limit)
        return INT64_MAX;
    if (value < -limit)
        return INT64_MIN;
    return std::isnan(value) ? 0 : static_cast<int64_t>(value);
}

void DoMath(EXPR *e, int32_t precedence) {
    for (;;) {
        const EXPROPERATOR *top = e->operators;
        if (top->precedence < precedence)
            return;
        const uint8_t code = top->code;
        ++e->operators;
        if (code >= EXPRNEGATE) {
            dounary(e, code, e->values - 1);
        } else {
            --e->values;
            dobinary(e, code, e->values - 1, e->values);
        }
    }
}
