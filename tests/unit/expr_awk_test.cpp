// The evaluator against awk: expressions that both languages read alike, some thousands.
#include "expr/expr.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct GENERATOR {
    std::mt19937 random;

    unsigned pick(size_t count) {
        return static_cast<unsigned>(random() % count);
    }
    // Letters of a form: E an expression, O an operand, N a number, I an integer above 0.
    std::string made(const char *form, int depth) {
        std::string text;
        for (; *form != 0; ++form) {
            if (*form == 'E')
                text += expression(depth - 1);
            else if (*form == 'O')
                text += operand(depth - 1);
            else if (*form == 'N')
                text += std::to_string(pick(1000)) + made(pick(2) == 0 ? ".I" : "", 0);
            else if (*form == 'I')
                text += std::to_string(pick(9999) + 1);
            else
                text += *form;
        }
        return text;
    }
    std::string operand(int depth) {
        const char *forms[] = {"width",     "height",   "depth",    "e",        "N",
                               "N",         "N",        "int((E))", "sin((E))", "cos(E)",
                               "sqrt(1+N)", "exp(0-N)", "(E < E)",  "(E<=E)",   "(E>E)",
                               "(E>=E)",    "(E==E)",   "(E != E)", "(E&&E)",   "(E||E)",
                               "(E ? E:e)", "(-O)",     "(I%I)",    "(E+E)"};
        return made(forms[pick(depth <= 0 ? 7 : std::size(forms))], depth);
    }
    // Divisors are never 0: awk gives up where the evaluator keeps the dividend.
    std::string expression(int depth) {
        const char *more[] = {"+O", " + O", "-O", " -O", "*O", "* O", "/I", " / I"};
        std::string text = operand(depth);
        for (unsigned count = pick(4); count > 0; --count)
            text += made(more[pick(std::size(more))], depth);
        return text;
    }
};

TEST(ExprAwk, GivesWhatAwkGives) {
    constexpr int count = 4000;
    char name[] = "/tmp/tolvik-expr-XXXXXX";
    const int descriptor = mkstemp(name);
    ASSERT_GE(descriptor, 0);
    FILE *program = fdopen(descriptor, "w");
    fprintf(program, "function p(v) { printf \"%%.17g\\n\", v }\n"
                     "BEGIN { width = 40; height = 12.5; depth = 7; e = 2.25\n");
    GENERATOR generator = {std::mt19937(12345)};
    std::vector<std::string> texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i) {
        texts.push_back(generator.expression(3));
        fprintf(program, "p(%s)\n", texts.back().c_str());
    }
    fprintf(program, "}\n");
    fclose(program);

    EXPR *evaluator = EXPR_open();
    EXPR_set(evaluator, "width", 40);
    EXPR_set(evaluator, "height", 12.5);
    EXPR_set(evaluator, "depth", 7);
    EXPR_set(evaluator, "e", 2.25);
    FILE *awk = popen((std::string("awk -f ") + name).c_str(), "r");
    ASSERT_NE(awk, nullptr);
    for (const std::string &text : texts) {
        char line[64] = "nothing";
        ASSERT_NE(fgets(line, sizeof line, awk), nullptr) << text;
        const double expected = strtod(line, nullptr);
        const double value = EXPR_get(evaluator, text.c_str());
        EXPECT_EQ(EXPR_error(evaluator), 0) << text;
        EXPECT_DOUBLE_EQ(value, expected) << text;
    }
    EXPECT_EQ(pclose(awk), 0);
    EXPR_close(evaluator);
    unlink(name);
}

} // namespace
