// The evaluator against awk: expressions that both languages read alike, some thousands.
#include "expr/expr.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct GENERATOR {
    std::mt19937 random;
    std::string text;

    unsigned pick(unsigned count) {
        return static_cast<unsigned>(random()) % count;
    }
    void put(const std::string &more) {
        text += more;
    }
    void put(unsigned value) {
        text += std::to_string(value);
    }
    void number() {
        put(pick(1000));
        if (pick(2) == 0) {
            put(".");
            put(pick(100000));
        }
    }
    void call(int depth) {
        const char *functions[] = {"int(", "sin(", "cos(", "sqrt(1+", "exp(-1*"};
        const unsigned which = pick(5);
        put(functions[which]);
        const size_t start = text.size();
        put("(");
        expression(depth - 1);
        put(")");
        if (which >= 3)
            text += text.substr(start).insert(0, 1, '*');
        put(")");
    }
    void pair(int depth, const char *operation) {
        put("(");
        expression(depth - 1);
        put(operation);
        expression(depth - 1);
        put(")");
    }
    void operand(int depth) {
        const char *names[] = {"width", "height", "depth", "e"};
        const char *comparisons[] = {" < ", "<=", ">", ">=", "==", " != ", "&&", "||"};
        switch (depth <= 0 ? pick(3) : pick(9)) {
        case 0:
            return put(names[pick(4)]);
        case 1:
        case 2:
            return number();
        case 3:
            return call(depth);
        case 4:
            return pair(depth, comparisons[pick(8)]);
        case 5:
            pair(depth, " ? ");
            text.back() = ':';
            put("e)");
            return;
        case 6:
            put("(-");
            operand(depth - 1);
            return put(")");
        case 7: // negative dividends differ
            put("(");
            put(pick(1000));
            put("%");
            put(pick(50) + 1);
            return put(")");
        default:
            return pair(depth, "+");
        }
    }
    // Divisors are never 0: awk gives up where the evaluator keeps the dividend.
    void expression(int depth) {
        operand(depth);
        for (unsigned more = pick(4); more > 0; --more) {
            const char operation = "+-*/"[pick(4)];
            text.append(pick(2), ' ').append(1, operation).append(pick(2), ' ');
            if (operation == '/')
                put(pick(99) + 1);
            else
                operand(depth - 1);
        }
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
    GENERATOR generator = {std::mt19937(12345), ""};
    std::vector<std::string> texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i) {
        generator.text.clear();
        generator.expression(3);
        texts.push_back(generator.text);
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
