#include "expr/expr.h"
#include "support.h"

#include <cmath>
#include <limits>
#include <span>
#include <unistd.h>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Expr : COUNTED {
    EXPR *e = EXPR_open();
    std::string said;

    void SetUp() override {
        EXPR_set(e, "x", 3);
        EXPR_set(e, "y", -2.5);
        EXPR_set(e, "inf", infinity);
    }
    void TearDown() override {
        EXPR_close(e);
        COUNTED::TearDown();
    }
    double quietly(const std::string &text) {
        double value = 0;
        said = printed([&] { value = EXPR_get(e, text.c_str()); });
        return value;
    }
};

std::string error(const std::string &what, int position) {
    return "expression - ERROR " + what + " AT POSITION " + std::to_string(position) + "\n";
}

std::string undefined(int position) {
    return error("UNDEFINED SYMBOL", position);
}

std::string syntax(int position) {
    return error("OPERAND SYNTAX ERROR", position);
}

std::string numbered(int number, int position) {
    return error("# " + std::to_string(number), position);
}

struct CASE {
    const char *text;
    double value;
};

TEST_F(Expr, Evaluates) {
    const CASE grouping[] = {{"1+2*3", 7},     {"2**3+1", 16},     {"2**3**2", 64}, {"-2**2", 4},
                             {"2**-1", 0.5},   {"8/2/2", 2},       {"8-2-2", 4},    {"1<<2+1", 8},
                             {"1|6&3^1", 3},   {"2<3==1", 1},      {"1&&0||1", 1},  {"1||0&&0", 1},
                             {"[1+2)*(3]", 9}, {" ( 1 , 2 ) ", 2}, {"- - -~+5", 6}, {"!0+!7", 1}};
    const CASE division[] = {{"7/0", 7},  {"7/-0", 7},    {"7%0", 7},  {"-7%3", 2},
                             {"7%-3", 1}, {"7.5%2", 1.5}, {"-7//3", 2}};
    const CASE integers[] = {{"1<<4", 16},      {"-16>>2", -4}, {"1<<64", 1}, {"5&3", 1},
                             {"5!2", 7},        {"5|2", 7},     {"5^1", 4},   {"5~1", 4},
                             {"-1.9&255", 255}, {"<<3", 6},     {">>-3", -2}, {"<-1", 65535}};
    const CASE choices[] = {{"3<?5", 3},    {"3>?5", 5},      {"0?1:2", 2},     {"5?1:2", 1},
                            {"5!:1!?2", 1}, {"0?1:2?3:4", 3}, {"1?2:0?3:4", 3}, {"(1?0?5:6:7)", 7},
                            {"1:2", 2},     {"3==3.0", 1},    {"3=4", 0},       {"3<>4", 1},
                            {"3!=3", 0},    {"3#4", 1},       {"x # 3", 0},     {"1--1", 0},
                            {"1--0", 1},    {"0++2", 1},      {"1 - -1", 2},    {"2<=2", 1},
                            {"3>=4", 0}};
    const CASE numbers[] = {{"$FF", 255},  {"0xff", 255}, {"0FFh", 255},   {"&ff", 255},
                            {"5& &ff", 5}, {"%101", 5},   {"101b", 5},     {"1+%11", 4},
                            {"@17", 15},   {"17o", 15},   {"17Q", 15},     {"12d", 12},
                            {"0b", 0},     {"1bh", 27},   {"1_000", 1000}, {"1_0__0", 100},
                            {".5", 0.5},   {"0.1", 0.1},  {"12.3", 12.3},  {"5.", 5},
                            {"$.8", 0.5},  {"1.8h", 1.5}, {"^A", 1},       {"^z+^@", 26},
                            {"*", 0},      {"2+**3", 2}};
    const CASE constants[] = {{"'AB'", 16706},       {"\"AB\"", 16706},   {"''''", 39},
                              {"\"\"\"\"", 34},      {"'a+b'", 0x612B62}, {"' '", 32},
                              {"\"<x*y>\"", 0x2D37}, {"'<x>'", 0x3C783E}, {"'\\'", 92},
                              {"\"\\377\"+1", 256}};
    const CASE functions[] = {
        {"x[2]", 5},          {"x[2][x]*2", 16},    {"(x)[y]", 0.5},      {"x+1", 4},
        {"-x*-y", -7.5},      {"  x ", 3},          {"max(1,7,3)", 7},    {"min(4,y,x)", -2.5},
        {"hypot(3,4)", 5},    {"hypot(1,2,2)", 3},  {"pow(2,10)", 1024},  {"pow(2)", 1},
        {"round(-2.5)", -3},  {"round(2.5)", 3},    {"int(-2.7)", -2},    {"floor(-2.5)", -3},
        {"ceil(-2.5)", -2},   {"log2(8)", 3},       {"log10(1000)", 3},   {"sqrt(2)**2>2", 1},
        {"log(exp(2))", 2},   {"Abs(-3)", 3},       {"abs(1,-9)", 9},     {"isdigit(48)", 1},
        {"isdigit(300)", 0},  {"isalpha(65.9)", 1}, {"isspace(-1)", 0},   {"isxdigit('f')", 1},
        {"isascii(127)", 1},  {"isascii(128)", 0},  {"isascii(-1)", 0},   {"tolower(65)", 97},
        {"TOUPPER('z')", 90}, {"toupper(65)", 65},  {"toascii(193)", 65}, {"rand(3)<=3", 1}};
    // Not numbers, and numbers outside the integers' range.
    const CASE infinities[] = {
        {"(inf-inf)|5", 5}, {"inf/0", infinity}, {"!(inf-inf)", 0}, {"1/inf", 0}, {"<<inf", -2}};
    // Addresses that are not known.
    const CASE addresses[] = {{"a#", 0},    {"(a#)+2", 2},  {"2+a#", 2},
                              {"a#[5]", 5}, {"(a#)-a#", 0}, {"4+(a#)-a#", 4},
                              {"a", 0},     {"x#*2", 6},    {"a# ", 0}};
    // Where an operand can follow, '#' compares.
    const CASE comparisons[] = {{"x#-1", 1},  {"x# + 3", 0}, {"x#--3", 0}, {"x#%11", 0},
                                {"x#&3", 0},  {"x#~1", 1},   {"x#^C", 0},  {"x#'A'", 1},
                                {"x#(3)", 0}, {"x#.5", 1}};
    const CASE longer[] = {{"1<<-1", -9223372036854775808.0},
                           {"< $12345678", 0x1234},
                           {"> $12345678", 0x5678},
                           {"123456789012345678901234567890", 123456789012345678901234567890.0},
                           {"''", 0},
                           {"\"\\\"\\\\\\'\\<\"", 0x225C273C},
                           {"\"\\b\\t\\n\\f\\r\"", 0x08090A0C0D},
                           {"\"\\101\\1012\"", 0x414132},
                           {"\"a<x>b\"", 0x613362},
                           {"'12345678'", 3544952156018063160.0},
                           {"sin(0)+cos(0)+tan(0)", 1},
                           {"asin(0)+acos(1)+atan(0)", 0},
                           {"max(min(5,2),(1,8),abs(1,-9))*2", 18},
                           {"max(max(1,2),(max(3,4)),1)", 4},
                           {"max(1,[2,9],3)", 9},
                           {"max(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,99)", 16},
                           {"inf|0", 9223372036854775807.0},
                           {"-inf&-1", -9223372036854775808.0},
                           {"int(-inf)", -9223372036854775808.0},
                           {"1<<inf", -9223372036854775808.0},
                           {"(inf-inf)==(inf-inf)", 0}};
    const std::span<const CASE> tables[] = {grouping,  division,    integers,  choices,
                                            numbers,   constants,   functions, infinities,
                                            addresses, comparisons, longer};
    for (const auto &table : tables) {
        for (const CASE &c : table) {
            EXPECT_DOUBLE_EQ(quietly(c.text), c.value) << c.text;
            EXPECT_EQ(said, "") << c.text;
            EXPECT_EQ(EXPR_error(e), 0) << c.text;
        }
    }
}

struct FAILURE {
    std::string text;
    double value;
    std::string said;
};

TEST_F(Expr, ReportsErrorsWithTheirPositions) {
    const FAILURE undefinedNames[] = {
        {"foo", 0, undefined(0)},   {"  foo", 0, undefined(2)},  {"narg", 0, undefined(0)},
        {"1e5", 0, undefined(0)},   {"1.2.3", 0, undefined(0)},  {"1_", 0, undefined(0)},
        {"12b", 0, undefined(0)},   {"5b", 0, undefined(0)},     {"1 2", 0, undefined(0)},
        {"X", 0, undefined(0)},     {"Max(1)", 0, undefined(0)}, {"2*\2203", 0, undefined(2)},
        {"2 \x90", 0, undefined(0)}};
    const FAILURE syntaxErrors[] = {
        {"", 0, syntax(0)},      {"   ", 0, syntax(3)},      {"1+", 0, syntax(2)},
        {"1 + )", 0, syntax(4)}, {"()", 0, syntax(1)},       {"max()", 0, syntax(4)},
        {"(,1)", 0, syntax(1)},  {"-", 0, syntax(1)},        {"1+2)", 0, syntax(3)},
        {"(1+2", 0, syntax(4)},  {"1;2", 0, syntax(1)},      {"1 (2)", 0, syntax(2)},
        {"x 3+1", 0, syntax(2)}, {"1+2 \x90", 0, syntax(4)}, {"7%%2+1", 1, syntax(0)},
        {"'A'B", 0, syntax(3)},  {"\"<2+>\"", 48, syntax(4)}};
    const FAILURE numberedErrors[] = {
        {"'A", 0, numbered(27, 0)},         {"\"\\400\"", 0, numbered(10, 0)},
        {"1+\"\\18\"", 1, numbered(29, 2)}, {"\"<x\"", 0, numbered(27, 0)},
        {"b#*2", 0, numbered(14, 0)},       {"1+2*c#", 1, numbered(14, 4)},
        {"(b#)+c#", 0, numbered(14, 5)},    {"1-b#", 1, numbered(14, 2)},
        {"'", 0, numbered(27, 0)},          {"-b#", 0, numbered(14, 1)},
        {"abs(b#)", 0, numbered(14, 4)}};
    const FAILURE longer[] = {{"1 + foo*2 - bar", 1, undefined(4) + undefined(12)},
                              {"foo(1+bar)+2", 2, undefined(0) + undefined(6)},
                              {"\xC3\xA9\x80+1", 1, undefined(0)},
                              {"1+\"<2+q>\"", 51, undefined(6)},
                              {"1+\"ABCDEFGHIJ + 2)", 1, numbered(27, 2)},
                              {"'ABCDEFGHI'+1", 1, numbered(10, 0)}};
    const std::span<const FAILURE> tables[] = {undefinedNames, syntaxErrors, numberedErrors,
                                               longer};
    for (const auto &table : tables) {
        for (const FAILURE &c : table) {
            EXPECT_EQ(quietly(c.text), c.value) << c.text;
            EXPECT_EQ(said, c.said) << c.text;
            EXPECT_EQ(EXPR_error(e), -1) << c.text;
        }
    }
    EXPECT_EQ(quietly("1+1"), 2);
    EXPECT_EQ(EXPR_error(e), 0);
}

TEST_F(Expr, KeepsVariables) {
    std::vector<std::string> names = {std::string(100000, 'v'), "e"};
    for (int i = 0; i < 5000; ++i)
        names.push_back("name" + std::to_string(i));
    for (size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(EXPR_set(e, names[i].c_str(), static_cast<double>(i)), 1);
    EXPR_set(e, "name17", -1);
    EXPECT_EQ(quietly("d# * 0"), 0);
    EXPR_set(e, "d", 8);
    EXPECT_EQ(quietly("d#*2"), 16);
    for (size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(EXPR_get(e, names[i].c_str()), i == 19 ? -1 : static_cast<double>(i));
    EXPECT_EQ(EXPR_get(e, "x+y", 1), 3);
}

double sum(int32_t count, double *arguments) {
    double result = 0;
    for (int32_t i = 0; i < count; ++i)
        result += arguments[i];
    return result;
}

double last(double, double, double, double, double, double, double, double, double, double, double,
            double, double, double, double, double p) {
    return p;
}

double again(EXPR *evaluator, int32_t count) {
    return EXPR_get(evaluator, "max(x, 1)") + count;
}

TEST_F(Expr, CallsRegisteredFunctions) {
    EXPR_addfunc(e, "sum", reinterpret_cast<EXPRFUNC>(sum), 1);
    EXPR_addfunc(e, "last", reinterpret_cast<EXPRFUNC>(last), 2);
    EXPR_addfunc(e, "again", reinterpret_cast<EXPRFUNC>(again), 0);
    EXPR_addfunc(e, "max", reinterpret_cast<EXPRFUNC>(sum), 1);
    EXPECT_EQ(quietly("sum(1,2,3)*10"), 60);
    EXPECT_EQ(quietly("last(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17)+last(1)"), 16);
    EXPECT_EQ(quietly("sum(1,again(1,2),again(3))+1"), 11);
    EXPECT_EQ(quietly("max(1,2)"), 2);
    for (int i = 0; i < 600; ++i)
        EXPR_addfunc(e, "sum", reinterpret_cast<EXPRFUNC>(sum), 1);
    EXPR_addfunc(e, "late", reinterpret_cast<EXPRFUNC>(sum), 1);
    EXPECT_EQ(quietly("late(1)"), 0);
    EXPECT_EQ(said, undefined(0));
}

TEST_F(Expr, TakesLongTexts) {
    EXPECT_EQ(quietly(std::string("0") + repeated("+1", 50000)), 50000);
    EXPECT_EQ(quietly(repeated("+", 10000) + "7"), 7);
    EXPECT_EQ(quietly(std::string("0") + repeated("+(x)", 10000)), 30000);
    EXPECT_EQ(quietly(std::string("1.") + repeated("0", 10000) + "1"), 1);
    EXPECT_EQ(quietly(repeated("9", 10000)), infinity);
    EXPECT_EQ(quietly(std::string("1") + repeated("_0", 15)), 1e15);
    EXPECT_EQ(quietly(std::string("'") + repeated("(", 10000)), 0);
    EXPECT_EQ(said, numbered(27, 0));
    EXPECT_EQ(quietly(repeated("n", 10000) + "*2"), 0);
    EXPECT_EQ(said, undefined(0));
}

// The stacks hold 124 open parentheses and a value.
TEST(ExprDeathTest, EndsTheProgramWhenItsStacksMeet) {
    const std::string open = repeated("(", 124) + "1";
    EXPR *e = EXPR_open();
    EXPECT_EQ(EXPR_get(e, (open + repeated(")", 124)).c_str()), 1);
    EXPECT_EQ(EXPR_error(e), 0);
    const std::string texts[] = {std::string("(") + open, repeated("-", 125) + "1",
                                 repeated("max(", 63) + "1", repeated("1+(", 32) + "1",
                                 repeated("(", 10000)};
    for (const std::string &text : texts) {
        EXPECT_EXIT(
            {
                dup2(STDERR_FILENO, STDOUT_FILENO);
                EXPR_get(e, text.c_str());
            },
            testing::ExitedWithCode(10),
            "^\n    0   \nSecondary heap overflow - assembly terminated\\.$")
            << text;
    }
    EXPR_close(e);
}

} // namespace
