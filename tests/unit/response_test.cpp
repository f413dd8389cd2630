#include "base/options.h"
#include "brax/files.h"
#include "brax/response.h"
#include "support.h"

#include <cstring>
#include <vector>

namespace {

struct Response : testing::Test {
    TREE tree;
    std::vector<char> block = std::vector<char>(BRAXLISTSIZE);
    char *const text = block.data();
    std::string said;

    void SetUp() override {
        setenv("VALUE", "a;b %1", 1);
    }
    void TearDown() override {
        OPTverbose = 2;
        OPTwrite = 1;
        BRAXhelpgiven = 0;
    }
    // Expands the specification after "-v1 "; every block must be freed.
    bool expand(const std::string &specification) {
        strcpy(text, "-v1 ");
        BRAXhelpgiven = 0;
        BRAX_newrefusals();
        const int held = galloccount;
        bool expanded = false;
        said = printed([&] { expanded = BRAX_responsefile(specification.c_str(), text); });
        EXPECT_EQ(galloccount, held) << specification;
        EXPECT_TRUE(expanded || strcmp(text, "-v1 ") == 0) << specification;
        return expanded;
    }
};

TEST_F(Response, ExpandsContents) {
    TREE::makefile("inner", "in ner");
    TREE::makefile("c", "C");
    const struct {
        std::string contents, parameters, expanded;
    } cases[] = {
        {"-v3\n;no %9 %ABSENT% @absent\na.c\n", "", "-v3 a.c  "},
        {";one\r\n\r\n;two\r\nx;y\tz", "", "x;y z "},
        {"%2/%1%0/%01", "(x,y)", "y/x/x "},
        {"[%1|%2]", "{a{b,c}d,}", "[a{b,c}d|] "},
        {"<%1>", "[]", "<> "},
        {"50%% %VALUE% %VA-%%%1", "(q)", "50% a;b %1 %VA-%q "},
        {"plain", "(open", "plain "},
        {"@inner; b @inner,c&inner", "", "in ner  ;  b in ner ,c&inner "},
        {"@VALUE; x", "", "a;b %1\n ;  x "},
        {std::string("a\0b\xE9@c\x01", 7), "",
         "a b\xE9"
         "C \x01 "},
        {"@c(\n;%9 %ABSENT%\n) x", "", "C  x "},
    };
    for (const auto &c : cases) {
        TREE::makefile("list", c.contents);
        EXPECT_TRUE(expand("list" + c.parameters)) << c.contents;
        EXPECT_EQ(text, "-v1 " + c.expanded);
        EXPECT_EQ(said, "");
    }
}

TEST_F(Response, ReportsWhyItFails) {
    const std::string longest(127, 'n');
    TREE::makefile("unset", "x %VALUE% %absent%");
    TREE::makefile("empty");
    TREE::makedir("directory");
    TREE::makefile(longest, "%1");
    TREE::makefile("long", "%" + longest + "n%");
    const struct {
        std::string specification, reason;
    } cases[] = {
        {"list(a)b", "brax - INVALID NAME FORMAT 'list(a)b'.\n"},
        {"list[a,[b]", "brax - MISSING CLOSING BRACE ON 'list[a,[b]'.\n"},
        {"unset", "BRAX - ENVIRONMENT VARIABLE 'ABSENT' NOT DEFINED.\n"},
        {"long", "brax - ENVIRONMENT VARIABLE NAME TOO LONG <" + longest.substr(0, 40) + "...>\n"},
        {"empty", ""},
        {"directory", ""},
        {"", ""},
    };
    for (const auto &c : cases) {
        const std::string name = c.specification.substr(0, c.specification.find_first_of("([{"));
        OPTverbose = 1;
        EXPECT_FALSE(expand(c.specification));
        EXPECT_EQ(said, c.reason + "WARNING - could not expand file <" + name + ">\n");
        OPTverbose = 0;
        EXPECT_FALSE(expand(c.specification));
        EXPECT_EQ(said, c.reason.find("BRACE") == std::string::npos ? "" : c.reason);
    }
    EXPECT_TRUE(expand(longest + "(" + longest + ")"));
    EXPECT_EQ(text, "-v1 " + longest + " ");
}

TEST_F(Response, SkipsNestedFilesThatFail) {
    TREE::makefile("list", "a @missing; b");
    EXPECT_TRUE(expand("list"));
    EXPECT_STREQ(text, "-v1 a  ;  b ");
    EXPECT_EQ(said, "WARNING - could not expand file <missing>\n");
    EXPECT_EQ(BRAXhelpgiven, 1);
}

TEST_F(Response, RefusesFilesThatNameThemselves) {
    TREE::makefile("self", "x @./self(1) @self");
    for (int i = 0; i < 4097; ++i)
        TREE::makefile("chain" + std::to_string(i), "@chain" + std::to_string(i + 1));
    const char *cases[][3] = {
        {"self", "./self", "NAMES ITSELF"},
        {"chain0", "chain4096", "IS NESTED TOO DEEPLY"},
    };
    for (const auto &[specification, name, problem] : cases) {
        EXPECT_FALSE(expand(specification));
        EXPECT_EQ(said, std::string("brax - RESPONSE FILE '") + name + "' " + problem +
                            ".\nWARNING - could not expand file <" + specification + ">\n");
    }
}

TEST_F(Response, LoadsAndSavesWholeFiles) {
    BRAXBUF buffer = {const_cast<char *>("ab\0c"), 4};
    EXPECT_EQ(printed([&] { EXPECT_TRUE(BRAX_savefile(&buffer, "saved")); }), "Writing, ");
    EXPECT_EQ(printed([&] { EXPECT_FALSE(BRAX_savefile(&buffer, "/dev/full")); }),
              "Writing, write warning.  4 requested, got -1\n"
              "BRAX_savefile - COULD NOT WRITE FILE '/dev/full'\n");
    OPTwrite = 0;
    EXPECT_EQ(printed([&] { EXPECT_TRUE(BRAX_savefile(&buffer, "unwritten")); }), "");
    EXPECT_FALSE(std::filesystem::exists("unwritten"));
    EXPECT_EQ(printed([&] { ASSERT_NE(BRAX_loadfile(&buffer, "./saved"), nullptr); }),
              "saved: Reading, ");
    EXPECT_EQ(std::string(static_cast<char *>(buffer.p), 5), std::string("ab\0c\0", 5));
    EXPECT_EQ(buffer.size, 4);
    BRAX_free(&buffer);
    EXPECT_EQ(printed([&] { EXPECT_EQ(BRAX_loadfilev(&buffer, "./no", 1), nullptr); }),
              "no BRAX_loadfilev - COULD NOT READ FILE './no'\n");
}

TEST(Files, WordProgressAndPercentages) {
    char buffer[BRAXFIELDSIZE];
    const char *cases[][2] = {{"", ""},
                              {"f ", ""},
                              {"f: Reading, ", "Writing, "},
                              {"d/f: Reading, ", "Writing as f, "},
                              {"d/f: Reading, ", "Writing as d/f, "}};
    for (int verbose = 0; verbose < 5; ++verbose) {
        EXPECT_STREQ(BRAX_loadstr(buffer, "d/f", verbose), cases[verbose][0]);
        EXPECT_STREQ(BRAX_savestr(buffer, "d/f", verbose), cases[verbose][1]);
    }
    EXPECT_STREQ(BRAX_percentstr(buffer, 100, 25), "75.0%");
    EXPECT_STREQ(BRAX_percentstr(buffer, 100, 150), "-33.3%");
    EXPECT_STREQ(BRAX_percentstr(buffer, 0, 7), "-100.0%");
}

} // namespace
