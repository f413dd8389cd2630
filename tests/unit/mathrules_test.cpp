#include "base/options.h"
#include "support.h"
#include "wild/mathrules.h"
#include "wild/wild.h"

#include <vector>

namespace {

struct MathRules : COUNTED {
    int32_t verbose = OPTverbose;
    std::string said;

    void TearDown() override {
        WILD_deletemathrules();
        OPTverbose = verbose;
        COUNTED::TearDown();
    }
    static void setrules(const std::vector<std::string> &rules) {
        WILD_deletemathrules();
        for (const std::string &rule : rules)
            WILD_addmathrule(rule.c_str());
    }
    int32_t apply(int32_t index, std::string first = "12") {
        std::string second = "3";
        char *texts[] = {first.data(), second.data()};
        int32_t value = 0;
        said = printed([&] { value = WILD_applymathrules(texts, index, 2); });
        return value;
    }
};

constexpr int32_t none = WILDNORULE;

TEST_F(MathRules, ComputesCaptures) {
    const std::string fits = "#=1234567890+1234567890-1234567890+1234567"; // 42 characters
    const struct {
        std::vector<std::string> rules;
        int32_t first, second;
    } cases[] = {
        {{}, none, none},
        {{"#[0]=#[0]*2"}, 24, none},
        {{"#=#+1"}, 13, 4},
        {{"#[0]=1", "#=#*10"}, 121, 30},
        {{"#=#/2"}, 6, 1},
        {{"#=0-#/2"}, -6, -1},
        {{"#[1]=#[7]", "#[0]=5"}, 5, none},
        {{"#[99999999999]=1", "#[1]=#[0]-#"}, none, 9},
        {{"#=2**40", "#[1]=1"}, INT32_MAX, INT32_MIN},
        {{"#=-2**40"}, INT32_MAX, INT32_MAX},
        {{"#=0/0-exp(999)"}, INT32_MIN, INT32_MIN},
        {{fits.substr(0, 39)}, 1234569124, 1234569124},
        {{"#[1]=" + fits, "#[0]=7"}, 7, none},
    };
    for (const auto &c : cases) {
        setrules(c.rules);
        EXPECT_EQ(nummathrules, static_cast<int32_t>(c.rules.size()));
        OPTverbose = 0;
        EXPECT_EQ(apply(0), c.first) << nummathrules;
        EXPECT_EQ(said, "");
        EXPECT_EQ(apply(1), c.second) << nummathrules;
    }
}

TEST_F(MathRules, RefusesMalformedRules) {
    for (const char *rule :
         {"", "x", "#", "[0]=1", "#[0=1", "#[0", "#[]=1", "#[x]=1", "#[-0]=1", "#[0]1", "#[0]=#[2]",
          "#=#[", "#=#[]", "#=#[1", "#=#[a]", "#=1+2+3+4+5+6+7+8+9+1+2+3+4+5+6+7+8+9+10",
          "#=#*#*#*#*#*#*#*#*#*#*#*#*#*#*"}) {
        setrules({rule, "#=1"});
        OPTverbose = 2;
        EXPECT_EQ(apply(0), none) << rule;
        EXPECT_EQ(said, "Invalid rule format " + std::string(rule) + "\n");
        OPTverbose = 1;
        EXPECT_EQ(apply(0), none) << rule;
        EXPECT_EQ(said, "") << rule;
    }
    setrules({"#=1", "#=#+x"});
    OPTverbose = 2;
    EXPECT_EQ(apply(1), none);
    EXPECT_EQ(said, "expression - ERROR UNDEFINED SYMBOL AT POSITION 2\n"
                    "Error in expression: 3+x\n");
    setrules({"#=1"});
    EXPECT_EQ(apply(0, std::string(5000, '9')), 1);
    setrules({"#=#"});
    EXPECT_EQ(apply(0, std::string(40, '9')), none);
    EXPECT_EQ(said, "Invalid rule format #=#\n");
}

TEST_F(MathRules, UsesTheMatchersCharacters) {
    WILDcharnumber = '%';
    WILDcharleftbracket = '{';
    WILDcharrightbracket = '}';
    setrules({"%{1}=%{0}*2+%", "#=1"});
    OPTverbose = 0;
    EXPECT_EQ(apply(1), none);
    setrules({"%{1}=%{0}*2+%"});
    EXPECT_EQ(apply(1), 27);
    WILDcharnumber = '#';
    WILDcharleftbracket = '[';
    WILDcharrightbracket = ']';
}

TEST_F(MathRules, ChangeTheNumbersOfAMatch) {
    const struct {
        std::vector<std::string> rules;
        const char *destination, *output;
    } cases[] = {
        {{}, "n###-##", "n012-03"},
        {{"#=#+1"}, "n###-#", "n013-4"},
        {{"#[1]=#[0]*#[1]"}, "n##-####", "n12-0036"},
        {{"#[0]=3-#"}, "n#####-#", "n-0009-3"},
        {{"#[0]=#*10"}, "n#[0][100..200]", "n012"},
        {{"#[1]=1"}, "n#[0][-32768]", "n012"}, // no rule for this capture
        {{"#=x"}, "n#,#", "n123"},
    };
    OPTverbose = 0;
    for (const auto &c : cases) {
        setrules(c.rules);
        char output[64];
        printed([&] { EXPECT_EQ(WILD_match(output, "f12_3.c", "f#_#.c", c.destination), 1); });
        EXPECT_STREQ(output, c.output) << c.destination;
    }
}

} // namespace
