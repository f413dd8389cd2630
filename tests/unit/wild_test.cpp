#include "base/options.h"
#include "support.h"
#include "wild/mathrules.h"
#include "wild/wild.h"

#include <cstring>
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
        {{"#=0-#/2"}, -6, -1},
        {{"#[1]=#[7]", "#[0]=5"}, 5, none},
        {{"#[99999999999]=1", "#[1]=#[0]-#"}, none, 9},
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
        {{"#[0]=3-#"}, "n#####-#", "n-0009-3"},
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

// '+' or '-' for the result, then the output, from a block of just the documented size, so that the
// sanitizer finds a longer one. '~' stands for an untouched output.
std::string matched(WILDMATCHFUN function, const std::string &string, const std::string &pattern,
                    const std::string &destination) {
    const auto room = static_cast<size_t>(WILD_outputsize(string.c_str(), destination.c_str()));
    std::vector<char> output(room, '~');
    output.shrink_to_fit();
    const int result =
        function(output.data(), string.c_str(), pattern.c_str(), destination.c_str());
    const bool touched = output[0] != '~';
    std::string said = result != 0 ? "+" : "-";
    return said += touched ? output.data() : "~";
}

// Every test finds and leaves the settings at their defaults.
struct Wild : testing::Test {
    int32_t verbose = OPTverbose;
    Wild() {
        reset();
    }
    ~Wild() override {
        reset();
        OPTverbose = verbose;
    }
    static void reset() {
        WILDcharstar = '*';
        WILDcharquestion = '?';
        WILDcharnumber = '#';
        WILDtoupper = 0;
        current_unmatched = 0;
        OPTverbose = 0;
    }
};

TEST_F(Wild, MatchesAndBuilds) {
    const struct {
        WILDMATCHFUN function;
        const char *string, *pattern, *destination, *output;
    } cases[] = {
        {WILD_match, "abc", "*?", "?*", "+cab"},
        {WILD_match, "ab.c.d", "*?.?", "*", "-"},
        {WILD_match, "a.c.c", "*.c", "*.o", "-"},
        {WILD_match, "ab", "*#", "x", "-"},
        {WILD_match, "1x2ab", "#ab", "x", "-"},
        {WILD_match, "", "", "x", "+x"},
        {WILD_match, "abc", "", "x", "-"},
        {WILD_match, "", "*", "x", "+x"},
        {WILD_match, "abc", "abd", "x", "-~"},
        {WILD_match, "a\\b", "a/b", "x", "+x"},
        {WILD_match, "a/b", "a\\b", "x", "-~"},
        {WILD_match, "f12.t", "f#.t", "n####.d", "+n0012.d"},
        {WILD_match, "a1b2", "?#?#", "#[1]?[0]", "+2a"},
        {WILD_match, "a.b.c", "**.c", "*.o", "+a.b.o"},
        {WILD_match, "README.TXT", "*.txt", "*.doc", "-"},
        {WILD_match, "xa\\b", "*a/b", "x", "-"}, // after '*' the separators differ
        {WILD_imatch, "README.TXT", "*.txt", "*.doc", "+README.doc"},
        {WILD_icmatch, "README.txt", "*.TXT", "*.DOC", "+README.doc"},
        {WILD_icmatch, "Ab1X", "ab?x", "xyz?[0]uvw", "+Xyz1UVW"},
        {WILD_icmatch, "AxB", "a?b", "?[0]?[0]?[0]?[0]qQ", "+xxxxqQ"},
        {WILD_matchpath, "src/a.c", "*/*.c", "obj/*.o", "+obj/a.o"},
        {WILD_matchpath, "src/a.c", "*/*.c", "*/*.o", "+src/a.o"},
        {WILD_matchpath, "src\\a.c", "*/*.c", "*/*.o", "-"},
        {WILD_matchpath, "src/a.c", "/*.c", "x", "-"},
        {WILD_matchpath, "/d/a.c", "/*.c", "*.o", "+d/a.o"},
        {WILD_matchpath, "a/b", "*/*", "*[0/1]", "+a1]"},
        {WILD_imatchpath, "SRC/A.C", "src/*.c", "o/*.o", "+o/A.o"},
        {WILD_icmatchpath, "SRC/a.C", "src/*.c", "obj/*.o", "+OBJ/a.O"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(matched(c.function, c.string, c.pattern, c.destination), c.output)
            << c.string << " " << c.pattern << " " << c.destination;
}

TEST_F(Wild, ReadsIndexes) {
    const char *cases[][4] = {
        {"abcdef", "*", "*[0][2..4]", "+cde"},  {"abcdef", "*", "*[][..4+=2]", "+ace"},
        {"abcdef", "*", "*[0][!1..3]", "+aef"}, {"abcdef", "*", "*[0][5,0,9]", "+af"},
        {"abcdef", "*", "*[0][a..b]", "+"},     {"abc", "*", "*-*", "+abc-"},
        {"abc", "*", "*[1]-*-*", "+-abc-"},     {"abc", "*", "<*[99999999999]?[7]>", "+< >"},
        {"a", "?", "?[0][3]", "+  a"},          {"a", "?", "?[][0..1]", "+a"},
        {"7", "#", "##[0][1..9]", "+007"},      {"7", "#", "##[0][8..9]", "+000"},
        {"7", "#", "##[0][]", "+07"},           {"1-2", "#-#", "#,#", "+12"},
        {"1-2", "#-#", "#[1],##[0]", "+201"},   {"1-2", "#-#", "#,*", "+1,"},
        {"abc", "*", "x*[0", "+xabc"},          {"abc", "*", "x*[0][1]y", "+xby"},
        {"abc", "*", "x*[0][1y", "+xabc"},      {"abc", "*", "x*[x]y", "-x"},
        {"abc", "*", "x*[-1]y", "-x"},          {"abc", "*", "x*[0[1]", "-x"},
        {"abc", "*", "x*[0][1..b]y", "-x"},     {"abc", "*", "x*[0][1..2+=0]y", "-x"},
    };
    for (const auto &[string, pattern, destination, output] : cases)
        EXPECT_EQ(matched(WILD_match, string, pattern, destination), output) << destination;
    EXPECT_EQ(matched(WILD_match, "a", "?", "?[0][40000]"),
              std::string("+") + std::string(39999, ' ') + "a");
}

using PREFIXFUN = int (*)(char *, const char *, const char *, const char *, int *);

TEST_F(Wild, ReportsTheLengthOfAPrefix) {
    const struct {
        PREFIXFUN function;
        const char *string, *pattern;
        const char *output;
        int matched, length;
    } cases[] = {
        {WILD_nmatch, "a.c.c", "*.c", "x", 1, 3},
        {WILD_nmatch, "abc", "", "x", 1, 0},
        {WILD_nmatch, "xbc", "a*", "~", 0, -7},
        {WILD_nmatch, "abc", "a?x", "", 0, 2},
        {WILD_nmatch, "abd", "*ac", "", 0, 1}, // as far as the literal agrees
        {WILD_nmatch, "1x2ab", "#ab", "", 0, 5},
        {WILD_nimatch, "ABC", "ab", "x", 1, 2},
        {WILD_nicmatch, "ABC", "ab", "X", 1, 2},
        {WILD_nmatchpath, "dir/name.c", "*/*e", "x", 1, 4},
        {WILD_nmatchpath, "dir/name.c", "di/*e", "", 0, -7},
        {WILD_nimatchpath, "dir/NAME.c", "*/*z", "", 0, 0},
        {WILD_nicmatchpath, "dir/NAME.c", "*/name", "X", 1, 4},
    };
    for (const auto &c : cases) {
        char output[64] = "~";
        int length = -7;
        EXPECT_EQ(c.function(output, c.string, c.pattern, "x", &length), c.matched) << c.pattern;
        EXPECT_STREQ(output, c.output) << c.string << " " << c.pattern;
        EXPECT_EQ(length, c.length) << c.string << " " << c.pattern;
    }
}

TEST_F(Wild, CountsNumbersWithoutCapture) {
    EXPECT_EQ(matched(WILD_match, "a", "?", "##-#"), "+0-0");
    EXPECT_EQ(matched(WILD_matchpath, "a/b", "*/*", "#/#"), "+1/2");
    EXPECT_EQ(current_unmatched, 3);
}

TEST_F(Wild, RaisesTheFirstInsertions) {
    WILDtoupper = 1;
    EXPECT_EQ(matched(WILD_match, "abc", "*", "*[0]-*[0]"), "+ABC-abc");
    EXPECT_EQ(matched(WILD_match, "a1b", "?#*", "*[7]?[7]#-?*"), "+ 1-Ab");
    EXPECT_EQ(matched(WILD_matchpath, "a/b", "*/*", "*/*"), "+A/B");
}

TEST_F(Wild, FollowsTheSettings) {
    WILDcharstar = '%';
    WILDcharquestion = '*';
    WILDcharnumber = 0xE9 - 256; // characters are signed
    EXPECT_EQ(matched(WILD_match, "a#b12", "*#%\xE9", "%-*-\xE9\xE9\xE9?"), "+b-a-012?");
    WILDcharnumber = WILDcharstar; // then it is a star
    EXPECT_EQ(matched(WILD_match, "abc", "%", "%[0]%[0]%%"), "+abcabcabc");
}

TEST_F(Wild, FailsBeyondItsLimits) {
    const std::string full(1023, 'a');
    const std::string over(1024, 'a');
    const auto lengthOf = [](const std::string &text) { return text.size() - 1; };
    EXPECT_EQ(matched(WILD_match, full, full, "x"), "+x");
    EXPECT_EQ(matched(WILD_match, over, over, "x"), "-");
    EXPECT_EQ(matched(WILD_match, "", std::string(5000, '*'), "x"), "+x");
    EXPECT_EQ(lengthOf(matched(WILD_match, full, "*", "*")), 1023U);
    EXPECT_EQ(matched(WILD_match, over, "*", "*"), "-");
    EXPECT_EQ(matched(WILD_match, std::string(1024, '1') + "a", "#?", "x"), "-");
    EXPECT_EQ(lengthOf(matched(WILD_match, full + "b" + full + "b" + full, "*b*b*", "***")), 3069U);
    EXPECT_EQ(lengthOf(matched(WILD_imatch, full + "B" + full, "*b*", "**")), 2046U);
    EXPECT_EQ(matched(WILD_imatch, full + "B" + full + "B", "*b*b", "x"), "-");
    EXPECT_EQ(
        matched(WILD_match, std::string(511, '1') + full.substr(511), "#*", std::string(3001, '#')),
        std::string("+") + std::string(2490, '0') + std::string(511, '1'));
    const std::string index = "*[" + std::string(1021, '0') + "]";
    EXPECT_EQ(matched(WILD_match, "a", "*", index), "+a");
    EXPECT_EQ(matched(WILD_match, "a", "*", "x*[0" + index.substr(2)), "-x");
    EXPECT_EQ(matched(WILD_matchpath, "a/" + full, "*/*", "*/*"), "+a/" + full);
    EXPECT_EQ(matched(WILD_matchpath, "a/" + over, "*/a*", "x"), "-");
    for (const char *tail : {"x", "?[0]", "*[0]", "*[0][..]", "?[0][9]", "##########"})
        EXPECT_EQ(matched(WILD_matchpath, "a/bcd", "*/?*", "*/" + over.substr(1) + tail), "-")
            << tail;
    EXPECT_EQ(matched(WILD_matchpath, "a/" + full, "*/*", "**[0]b"), "-");
}

// Backtracking would take exponential time here.
TEST_F(Wild, ManyWildcardsEnd) {
    const std::string pattern = repeated("*a", 511);
    const std::string destination = repeated("*[0][0..9000+=2,7]?[3][5]##", 511);
    EXPECT_EQ(matched(WILD_match, std::string(2000, 'a'), pattern, destination), "-");
    EXPECT_EQ(matched(WILD_match, std::string(510, 'a'), pattern, destination), "-");
    EXPECT_EQ(matched(WILD_match, std::string(511, 'a'), pattern, destination)[0], '+');
}

TEST_F(Wild, ReportsInvalidIndexesAndMissingCaptures) {
    const struct {
        int verbose;
        const char *destination, *message;
    } cases[] = {
        {0, "*[x]", ""},
        {1, "*[x]y", "WILD_match - invalid index format: [x]\n"},
        {1, "*[0][1..b]", "WILD_match - invalid index format: [0][1..b]\n"},
        {5, "*[4]", ""},
        {6, "*[4]", "WILD_match - Unmatched wildcard *[4]\n - replacing with \"\""},
        {6, "?", "WILD_match - Unmatched wildcard ?[0]\n - replacing with ' '"},
        {6, "##[3]", "WILD_match - Unmatched wildcard #[3]\n - replacing with 8"},
    };
    for (const auto &c : cases) {
        OPTverbose = c.verbose;
        current_unmatched = 8;
        EXPECT_EQ(printed([&] { matched(WILD_match, "abc", "*", c.destination); }), c.message);
    }
}

TEST_F(Wild, PartsWorkAlone) {
    char text[WILDTEXTSIZE];
    char number[WILDTEXTSIZE];
    char range[WILDTEXTSIZE];
    EXPECT_TRUE(compressWildCard(text, "a**b##?*?"));
    EXPECT_STREQ(text, "a*b#?*?");
    EXPECT_STREQ(caseStrStr("xABa", "ab", 0), "ABa");
    EXPECT_STREQ(caseStrStr("xABa", "", 1), "xABa");
    EXPECT_EQ(caseStrStr("xABa", "ab", 1), nullptr);
    EXPECT_EQ(caseStrStr(std::string(2048, 'a').c_str(), "a", 0), nullptr);
    EXPECT_STREQ(getIndex(text, "[0][1][2]x"), "[2]x");
    EXPECT_STREQ(text, "[0][1]");
    EXPECT_EQ(isValidIndex(text, number, range), 1);
    EXPECT_STREQ(number, "0");
    EXPECT_STREQ(range, "1");
    EXPECT_STREQ(getIndex(text, "[0[x"), "x");
    EXPECT_STREQ(text, "[0[");
    EXPECT_EQ(isValidIndex("[0][1]x", number, range), 0);
    const struct {
        int32_t value, radix;
        const char *digits;
    } cases[] = {{0, 10, "0"}, {-2147483647 - 1, 10, "-2147483648"}, {255, 16, "ff"}, {5, 0, "~"}};
    for (const auto &c : cases) {
        strcpy(text, "~");
        wild_itoa(c.value, text, c.radix);
        EXPECT_STREQ(text, c.digits);
    }
}

} // namespace
