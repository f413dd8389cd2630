#include "range/ranger.h"
#include "support.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

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
        {"1..5", {1, 2, 3, 4, 5}},
        {"5..1", {5, 4, 3, 2, 1}},
        {"11..0-=3", {11, 8, 5, 2}},
        {"0..1+=0.25", {0, 0.25, 0.5, 0.75, 1}},
        {"0..0.3+=0.1", {0, 0.1, 0.2, 0.3}},
        {"0.3..0+=0.1", {0.3, 0.2, 0.1, 0}},
        {"..6+=4", {2, 6}},
        {"3..", {3, 4, 5}},
        {"2+=2", {2, 4}},
        {"2+=", {2}},
        {"+=2.5", {0, 2.5, 5}},
        {"5..1+=-2", {5, 3, 1}},
        {"-1..+1,-.5..", {-1, 0, 1, -.5, .5, 1.5, 2.5, 3.5, 4.5}},
        {"7..", {7, 6, 5}},
        {"x*2..x+(1,2)*4,'\"'-33", {6, 7, 8, 9, 10, 11, 1}},
        {"(x)..max(4,5)-=1", {3, 4, 5}},
        {"4,", {4}},
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
    EXPECT_EQ(valuesof("0..inf+=inf,7"), (std::vector<double>{0, 7}));
    EXPECT_EQ(valuesof("..10+=inf,2+=inf"), (std::vector<double>{10, 2}));
    EXPECT_EQ(valuesof("-inf..inf"), std::vector<double>{-infinity});
    EXPECT_EQ(valuesof("inf..nan,nan..1").size(), 2U);
    EXPECT_EQ(valuesof("9007199254740990..9007199254740999").size(), 3U);
    EXPECT_EQ(valuesof("0..inf").size(), 100U);
    EXPECT_EQ(valuesof("0..1e300+=1e300"), (std::vector<double>{0, 1e300}));
}

TEST_F(Ranger, ReturnsItsExtent) {
    const struct {
        const char *text;
        double minimum, maximum;
        int64_t count;
    } cases[] = {
        {"1..10+=4,20", 1, 20, 4},
        {"10..0-=3,-5", -5, 10, 5},
        {"0..0.3+=0.1", 0, 0.3, 4},
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
