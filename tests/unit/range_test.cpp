#include "base/fields.h"
#include "base/options.h"
#include "range/range.h"
#include "range/ranger.h"
#include "support.h"

#include <climits>
#include <cmath>
#include <limits>
#include <unistd.h>
#include <vector>

namespace {

// The numbers from -2 to 14 that a specification allows.
std::string allowed(const char *spec) {
    std::string numbers;
    for (int32_t n = -2; n <= 14; ++n)
        if (RANGE_match(spec, nullptr, n) != 0)
            numbers += std::to_string(n) + " ";
    return numbers;
}

TEST(Range, AllowsNumbers) {
    const char *everything = "-2 -1 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 ";
    const char *cases[][2] = {
        {"1..10", "1 2 3 4 5 6 7 8 9 10 "},
        {"0..10+=3", "0 3 6 9 "},
        {"0..10+=-3", "0 3 6 9 "},
        {"1..5+=x", "1 2 3 4 5 "},
        {"7+=3", "7 10 13 "},
        {"3,", "3 "},
        {"!-1..12", "-2 13 14 "},
        {"!-2..14+=2", "-1 1 3 5 7 9 11 13 "},
        {"!5..,9", "-2 -1 0 1 2 3 4 9 "},
        {"..2", "0 1 2 "},
        {"99999999999..-99999999999", everything},
        {"", everything},
        {"3,..", everything},
        {"+=", everything},
        {"1..m", ""},
        {"3,1..m,4", ""},
        {"a..m", "0 "},
        {"1 ", "0 "},
    };
    for (const auto &[spec, numbers] : cases)
        EXPECT_EQ(allowed(spec), numbers) << spec;
}

TEST(Range, AllowsTexts) {
    const struct {
        const char *spec, *text;
        int matched;
    } cases[] = {
        {"a..m", "a", 1},     {"a..m", "B", 1},     {"a..m", "n", 0},      {"m..a", "b", 1},
        {"!a..m", "n", 1},    {"f2..f10", "f5", 1}, {"f2..f10", "f50", 0}, {"f2..f10", "f", 0},
        {"a..", "zebra", 1},  {"b..", "a", 0},      {"..m", "b", 1},       {"..m", "z", 0},
        {"*.c", "main.c", 1}, {"*.c", "main.o", 0}, {"x,*a*b", "-A-B", 1}, {"1..5", "text", 0},
        {"1..m", "b", 0},     {"a..z", "\xE9", 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(RANGE_match(c.spec, c.text, 0), c.matched) << c.spec << " " << c.text;
}

TEST(Range, CountsAndFindsTheEnds) {
    const struct {
        const char *spec;
        int32_t lower, upper, check, count, minimum, maximum;
    } cases[] = {
        {"0..10+=3", 0, 100, 1, 4, 0, 9},
        {"10..0+=3", 0, 100, 1, 4, 0, 9},
        {"!4..6", 0, 9, 1, 7, 0, 9},
        {"", 0, 9, 1, 10, 0, 9},
        {"a..m", 0, 9, 1, 10, INT_MAX, -INT_MAX},
        {"1..m", 0, 9, 0, 10, 0, 9},
        {"2..3+=0", 0, 9, 0, 10, 0, 9},
        {"0..2147483647,-5", -10, INT_MAX, 1, INT_MAX, -5, INT_MAX},
        {"-2147483648..2147483647", INT_MIN, INT_MAX, 1, INT_MAX, INT_MIN, INT_MAX},
        {"!1..9+=2", 0, 9, 1, 5, 0, 8},
        {"!0..9", 0, 9, 1, 0, 10, -1},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(RANGE_check(c.spec, c.lower, c.upper), c.check) << c.spec;
        EXPECT_EQ(RANGE_count(c.spec, c.lower, c.upper), c.count) << c.spec;
        EXPECT_EQ(RANGE_min(c.spec, c.lower), c.minimum) << c.spec;
        EXPECT_EQ(RANGE_max(c.spec, c.upper), c.maximum) << c.spec;
    }
}

TEST(Range, ConstrainsANumber) {
    const struct {
        const char *spec;
        int32_t number, below, nearest, above;
    } cases[] = {
        {"0..10+=4", 5, 4, 4, 8},
        {"0..10+=4", 6, 4, 8, 8},
        {"0..10+=4", 20, 8, 8, 8},
        {"5..10", -7, 5, 5, 5},
        {"!4..8", 5, 3, 3, 9},
        {"!4..8", 3, 3, 3, 3},
        {"!0..8+=2", 4, 3, 5, 5},
        {"0,20,9", 10, 0, 9, 9},
        {"1..m", -8, -INT_MAX, -INT_MAX, -INT_MAX},
        {"!..", INT_MAX, -1, INT_MAX, INT_MAX},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(RANGE_constrain(c.spec, c.number, -1), c.below) << c.spec << " " << c.number;
        EXPECT_EQ(RANGE_constrain(c.spec, c.number, 0), c.nearest) << c.spec << " " << c.number;
        EXPECT_EQ(RANGE_constrain(c.spec, c.number, 1), c.above) << c.spec << " " << c.number;
    }
}

TEST(Range, ComparesTextsWithBounds) {
    const struct {
        const char *text, *bound;
        int32_t result;
    } cases[] = {
        {"abc", "ABC", 0},        {"abc", "abd", -1},   {"ab", "abc", -'c'},
        {"\xE9", "a", -23 - 'a'}, {"x9", "x10", -1},    {"x-5", "x3", -8},
        {"007", "7", '0' - '7'},  {"", "?", -'?'},      {"ax", "a#", 'x' - '0'},
        {"a7c", "?#C", 0},        {"xxabab", "*ab", 0}, {"ba", "*a*c", 'b' - 'a'},
        {"ab", "a***b**", 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(wildstrcmp(c.text, c.bound), c.result) << c.text << " " << c.bound;
    EXPECT_EQ(wildstrcmp("9999999999", "-9999999999"), INT_MAX);
}

// None takes exponential time, or reads a number anew for every digit.
TEST(Range, HostileBoundsEnd) {
    const int held = galloccount;
    EXPECT_NE(wildstrcmp(std::string(1000, 'a').c_str(), (repeated("*a", 300) + "b").c_str()), 0);
    EXPECT_EQ(wildstrcmp(std::string(5000, 'a').c_str(), repeated("*a", 300).c_str()), 0);
    EXPECT_EQ(wildstrcmp("", std::string(100000, '*').c_str()), 0);
    const std::string zeros = std::string("*") + std::string(1000, '0') + "2";
    EXPECT_NE(wildstrcmp((std::string(2000, '0') + "1").c_str(), zeros.c_str()), 0);
    EXPECT_EQ(RANGE_match((repeated("5,", 5000) + "7").c_str(), nullptr, 7), 1);
    EXPECT_EQ(galloccount, held);
}

TEST(Range, RefusesLongElementsAndTexts) {
    const std::string longest(1023, 'x');
    EXPECT_EQ(RANGE_match(longest.c_str(), longest.c_str(), 0), 1);
    EXPECT_EQ(RANGE_check((longest + "x").c_str(), 0, 9), 0);
    EXPECT_EQ(RANGE_match(("5," + longest + "x").c_str(), nullptr, 5), 0);
    EXPECT_EQ(RANGE_match("*", std::string(2047, 'x').c_str(), 0), 1);
    EXPECT_EQ(RANGE_match("*", std::string(2048, 'x').c_str(), 0), 0);
    EXPECT_EQ(RANGE_match("!5,", std::string(2048, 'x').c_str(), 0), 0);
}

TEST(Range, CutsParts) {
    const char *cases[][4] = {
        {"1..10+=2", "1", "10", "2"}, {"5+=2", "5", "", "2"},   {"..", "", "", ""},
        {"a...b", "a", ".b", ""},     {"1..+=3", "1", "", "3"}, {"1+=2..5", "1+=2", "5", "2..5"},
    };
    for (const auto &c : cases) {
        char parts[3][RANGEPARTSIZE];
        EXPECT_TRUE(rangeminstr(parts[0], c[0]) && rangemaxstr(parts[1], c[0]) &&
                    rangestepstr(parts[2], c[0]));
        for (int i = 0; i < 3; ++i)
            EXPECT_STREQ(parts[i], c[i + 1]) << c[0];
    }
}

TEST(RangeOption, ReadsAField) {
    const struct {
        const char *text;
        bool strip, stop;
        const char *field, *rest;
    } cases[] = {
        {"1..5,7 x", true, false, "1..5,7", " x"},
        {"1..5,7 x", true, true, "1", "..5,7 x"},
        {"1+=5", true, true, "1", "+=5"},
        {"1.+5", true, true, "1.+5", ""},
        {"(1, (2))3", true, true, "1, (2)", "3"},
        {"(1, 2)3 4", false, true, "(1, 2)3", " 4"},
        {"'a..b'x", true, true, "a..b", "x"},
        {"\"open, end", true, true, "open, end", ""},
        {"a\034b\xE9", true, false, "a\034b", "\xE9"},
    };
    for (const auto &c : cases) {
        char field[BRAXFIELDSIZE];
        EXPECT_STREQ(BRAX_getrangefield(field, c.text, c.strip, c.stop), c.rest) << c.text;
        EXPECT_STREQ(field, c.field) << c.text;
    }
    char field[BRAXFIELDSIZE];
    const std::string tooLong = std::string(2048, '1') + " x";
    const auto read = [&] {
        EXPECT_STREQ(BRAX_getrangefield(field, tooLong.c_str(), true, true), " x");
    };
    EXPECT_NE(printed(read).find("TOO LONG <111"), std::string::npos);
    EXPECT_STREQ(field, "");
    BRAXhelpgiven = 0;
    BRAX_newrefusals();
}

TEST(RangeOption, EndsTheProcessForAMalformedRange) {
    char field[BRAXFIELDSIZE];
    EXPECT_STREQ(BRAX_getrangeopt(field, "(1..5) x", "size", 0, 9), " x");
    EXPECT_STREQ(BRAX_getrangeopt(field, "1..m", "size", 0, INT_MAX), "");
    const auto readMalformed = [&field] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        BRAX_getrangeopt(field, "1..m", "size", 0, 9);
    };
    EXPECT_EXIT(readMalformed(), testing::ExitedWithCode(10),
                "^getrangeopt - RANGE OPTION VALUE OUT OF RANGE.  size.\n"
                "SPECIFIED 1..m. VALID RANGE IS 0..9\n$");
}

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Ranger : COUNTED {
    EXPR *evaluator = EXPR_open();

    void SetUp() override {
        EXPR_set(evaluator, "x", 3);
    }
    void TearDown() override {
        EXPR_close(evaluator);
        COUNTED::TearDown();
    }

    // At most a hundred values, with the defaults 0 and 5.
    std::vector<double> valuesof(const char *text, bool *failed = nullptr, EXPR *e = nullptr) {
        RANGER *ranger = RANGER_open(e, text, 0, 5);
        std::vector<double> values;
        for (double value = 0; values.size() < 100 && RANGER_next(ranger, &value) != 0;)
            values.push_back(value);
        if (failed != nullptr)
            *failed = ranger->failed != 0;
        RANGER_close(ranger);
        return values;
    }
};

TEST_F(Ranger, HandsOutEveryValue) {
    const struct {
        const char *text;
        std::vector<double> values;
    } cases[] = {
        {"10..0-=2", {10, 8, 6, 4, 2, 0}},
        {"11..0-=3", {11, 8, 5, 2}},
        {"0..0.3+=0.1", {0, 0.1, 0.2, 0.3}},
        {"0.3..0+=0.1", {0.3, 0.2, 0.1, 0}},
        {"..6+=4", {2, 6}},
        {"3..", {3, 4, 5}},
        {"+=2.5", {0, 2.5, 5}},
        {"5..1+=-2", {5, 3, 1}},
        {"-1..+1,-.5..", {-1, 0, 1, -.5, .5, 1.5, 2.5, 3.5, 4.5}},
        {"7..", {7, 6, 5}},
        {"x*2..x+(1,2)*4,'\"'-33", {6, 7, 8, 9, 10, 11, 1}},
        {"(x)..max(4,5)-=1", {3, 4, 5}},
        {"", {}},
    };
    for (const auto &c : cases) {
        bool failed = true;
        const std::vector<double> values = valuesof(c.text, &failed, evaluator);
        EXPECT_FALSE(failed) << c.text;
        ASSERT_EQ(values.size(), c.values.size()) << c.text;
        for (size_t i = 0; i < values.size(); ++i)
            EXPECT_NEAR(values[i], c.values[i], 1e-15) << c.text;
    }
    EXPECT_EQ(valuesof("1e1,0x10..17"), (std::vector<double>{10, 16, 17}));
    RANGER *ranger = RANGER_open(nullptr, "1,,6..0-=3", 0, 5);
    const struct {
        double value;
        int result;
    } steps[] = {{1, 1}, {0, 0}, {6, 1}, {3, 1}, {0, 1}, {-3, 0}, {-6, 0}};
    for (const auto &step : steps) {
        double value = 77;
        EXPECT_EQ(RANGER_next(ranger, &value), step.result);
        EXPECT_EQ(value, step.value);
    }
    RANGER_close(ranger);
}

TEST_F(Ranger, StopsAtMalformedElements) {
    for (const char *text : {"1,..", "1,2+=0", "1,2..3+=0", "1,2..3..4", "1,2+=1..4", "1,nope",
                             "1,(", "1,2..nope", "1,2+=1+"}) {
        printed([&] {
            bool failed = false;
            EXPECT_EQ(valuesof(text, &failed, evaluator), std::vector<double>{1}) << text;
            EXPECT_TRUE(failed) << text;
            RANGER *ranger = RANGER_open(evaluator, text, 0, 5);
            int64_t count = 0;
            EXPECT_EQ(RANGER_info(ranger, nullptr, nullptr, &count), 0) << text;
            EXPECT_EQ(count, 1) << text;
            EXPECT_EQ(RANGER_closest(ranger, 9, 0), 1) << text;
            EXPECT_EQ(ranger->failed, 1) << text;
            RANGER_close(ranger);
        });
    }
}

TEST_F(Ranger, EndsWhenAStepDoesNotMove) {
    EXPECT_EQ(valuesof("1e17..2e17,7"), (std::vector<double>{1e17, 7}));
    EXPECT_EQ(valuesof("1..2+=1e-300,7"), (std::vector<double>{1, 7}));
    EXPECT_EQ(valuesof("..10+=inf,2+=inf"), (std::vector<double>{10, 2}));
    EXPECT_EQ(valuesof("-inf..inf"), std::vector<double>{-infinity});
    EXPECT_EQ(valuesof("inf..nan,nan..1").size(), 2U);
    EXPECT_EQ(valuesof("9007199254740990..9007199254740999").size(), 3U);
}

TEST_F(Ranger, ReturnsItsExtent) {
    const struct {
        const char *text;
        double minimum, maximum;
        int64_t count;
    } cases[] = {
        {"1..10+=4,20", 1, 20, 4},
        {"10..0-=3,-5", -5, 10, 5},
        {"0..inf,0..5", 0, infinity, INT64_MAX},
        {"", 100, 0, 0},
    };
    for (const auto &c : cases) {
        RANGER *ranger = RANGER_open(nullptr, c.text, 0, 100);
        double first = 0;
        RANGER_next(ranger, &first);
        double minimum = -7;
        double maximum = -7;
        int64_t count = -7;
        EXPECT_EQ(RANGER_info(ranger, &minimum, &maximum, &count), 1) << c.text;
        EXPECT_EQ(minimum, c.minimum) << c.text;
        EXPECT_EQ(maximum, c.maximum) << c.text;
        EXPECT_EQ(count, c.count) << c.text;
        EXPECT_EQ(ranger->current, first) << c.text;
        RANGER_close(ranger);
    }
}

TEST_F(Ranger, FindsTheClosestValue) {
    const struct {
        const char *text;
        double value, nearest, below, above;
    } cases[] = {
        {"0..10+=5", 6, 5, 5, 10},       {"0..10+=5", 7.5, 10, 5, 10}, {"0..10+=5", 5, 5, 5, 5},
        {"0..10+=5", -1, 0, 0, 0},       {"1..10+=5", 12, 10, 10, 0},  {"10..0-=2", 7, 6, 6, 8},
        {"10..0-=2", 6.9, 6, 6, 8},      {"10..2-=2", 1, 2, 0, 2},     {"1,3,7", 5, 7, 3, 7},
        {"4..6,5..9", 5, 5, 5, 5},       {"", 5.0625, 0, 0, 0},        {"2..5+=inf", 2.5, 2, 2, 0},
        {"1..3", std::nan(""), 0, 0, 0},
    };
    for (const auto &c : cases) {
        RANGER *ranger = RANGER_open(nullptr, c.text, 0, 100);
        EXPECT_EQ(RANGER_closest(ranger, c.value, 0), c.nearest) << c.text << ' ' << c.value;
        EXPECT_EQ(RANGER_closest(ranger, c.value, 1), c.below) << c.text << ' ' << c.value;
        EXPECT_EQ(RANGER_closest(ranger, c.value, 2), c.above) << c.text << ' ' << c.value;
        RANGER_close(ranger);
    }
    RANGER_close(nullptr);
}

} // namespace
