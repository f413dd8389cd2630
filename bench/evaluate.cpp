// evaluate [NAME=VALUE]...: writes the value of every line of its input, an expression each.
#include "expr/expr.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

int main(int argc, char **argv) {
    EXPR *evaluator = EXPR_open();
    if (evaluator == nullptr)
        return 1;
    for (int i = 1; i < argc; ++i) {
        const std::string setting = argv[i];
        const size_t end = setting.find('=');
        if (end == std::string::npos)
            return 2;
        EXPR_set(evaluator, setting.substr(0, end).c_str(), strtod(argv[i] + end + 1, nullptr));
    }
    std::ios::sync_with_stdio(false);
    int status = 0;
    for (std::string line; std::getline(std::cin, line);) {
        printf("%.6f\n", EXPR_get(evaluator, line.c_str()));
        status |= EXPR_error(evaluator) != 0 ? 3 : 0;
    }
    EXPR_close(evaluator);
    return status;
}
