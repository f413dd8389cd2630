#include "base/fields.h"
#include "base/options.h"
#include "base/text.h"
#include "support.h"

namespace {

TEST(Fields, CutsFields) {
    const struct {
        const char *source;
        bool strip, keep;
        const char *field, *rest;
    } cases[] = {
        {"(a b),c", false, false, "(a b)", ",c"},
        {"(a b),c", true, false, "a b", ",c"},
        {"(a(b)c)d", true, false, "(a(b)c)d", ""},
        {"a==b=c", false, false, "a==b", "=c"},
        {"-=x,", false, false, "-=x", ","},
        {"a,b=c d", false, true, "a,b=c", " d"},
        {"\"my file\"=x", true, false, "my file", "=x"},
        {"\"open ended", true, false, "\"open ended", ""},
        {"a\034b c", false, false, "a b", " c"},
        {"a\xE9z", false, false, "a", "\xE9z"},
        {"'\"", true, true, "'\"", ""},
        {"\"", true, true, "\"", ""},
    };
    for (const auto &c : cases) {
        char field[BRAXFIELDSIZE];
        EXPECT_STREQ(BRAX_getfield(field, c.source, c.strip, c.keep), c.rest) << c.source;
        EXPECT_STREQ(field, c.field) << c.source;
    }
    EXPECT_STREQ(BRAX_nextfield(" ,\t, x"), "x");
}

TEST(Fields, ReadsNumbers) {
    const struct {
        const char *text;
        int32_t value, error;
    } cases[] = {
        {"123", 123, 0},    {"-5", -5, 0},        {"--5", 5, 0},
        {"0x1F", 31, 0},    {"$1F", 31, 0},       {"&1f", 31, 0},
        {"1Fh", 31, 0},     {"@17", 15, 0},       {"17o", 15, 0},
        {"17q", 15, 0},     {"%101", 5, 0},       {"101b", 5, 0},
        {"12d", 12, 0},     {"3$21", 7, 0},       {"2$1010", 10, 0},
        {"16$ff", 255, 0},  {"0FFh", 255, 0},     {"777o", 511, 0},
        {"'A'", 65, 0},     {"'AB'", 0x4142, 0},  {"''", 0, 0},
        {"'A", 0, 4},       {"'ABCDE'", 0, 5},    {"\"\\101\"", 65, 0},
        {"\"\\n\"", 10, 0}, {"\"\\477\"", 63, 1}, {"\"\\9\"", '9', 2},
        {"^C", 3, 0},       {"^@", 0, 0},         {"^Z", 26, 0},
        {"^1", 0, 10},      {"ff", 0, 10},        {"", 0, 6},
        {"-", 0, 6},        {"7", 7, 0},          {"x", 0, 10},
        {"1_0", 0, 10},     {"$1_F", 31, 0},      {"$1__F", 0, 10},
        {"%1__0", 2, 0},    {"5b", 0, 10},        {"16$", 0, 6},
        {"12x", 0, 10},     {"4294967296", 0, 0}, {"-0x80000000", INT32_MIN, 0},
        {"+5", 0, 10},      {"0hhh", 0, 0},
    };
    for (const auto &c : cases) {
        BRAXerrorcount = 0;
        EXPECT_EQ(BRAX_getnum(c.text), c.value) << c.text;
        EXPECT_EQ(BRAXerrorcount, c.error) << c.text;
    }
    const char *tooLong[] = {"12345678901", "$123456789", "%111111111111111111111111111111111"};
    for (int i = 0; i < 3; ++i) {
        BRAX_getnum(tooLong[i]);
        EXPECT_EQ(BRAXerrorcount, 7 + i) << tooLong[i];
    }
    EXPECT_TRUE(BRAX_isnumber("") && BRAX_isnumber("-12") && BRAX_isnumber("1;x"));
    EXPECT_FALSE(BRAX_isnumber("1x"));
}

TEST(Fields, ReadsOptionValuesWithinTheirRange) {
    const struct {
        const char *text;
        int32_t value;
        const char *rest;
        int32_t refused;
    } cases[] = {{" x", 3, " x", 0}, {"5,", 5, ",", 0}, {"5%", 5, "%", 0}, {"w0 ", 3, "w0 ", 0},
                 {"0x2", 2, "", 0},  {"9", 6, "", 1},   {"-1", 0, "", 1},  {"4w0 ", 0, " ", 1},
                 {"4z ", 0, " ", 1}, {"? ", 77, " ", 1}};
    for (const auto &c : cases) {
        int32_t value = 77;
        BRAXhelpgiven = 0;
        printed([&] {
            EXPECT_STREQ(BRAX_getopt2(&value, c.text, "verbose", 0, 6, 3), c.rest) << c.text;
        });
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_EQ(BRAXhelpgiven, c.refused) << c.text;
    }
    int32_t off = 7;
    BRAX_getopt(&off, "", "switch", 0, 0);
    EXPECT_EQ(off, 0);
    BRAXhelpgiven = 0;
}

std::string rewritten(char *(*function)(char *, const char *, const char *), const char *name,
                      const char *rule) {
    char result[BRAXFIELDSIZE];
    return function(result, name, rule);
}

TEST(Text, ChangesExtensionsByRule) {
    const char *cases[][3] = {
        {"d.d/f", "=o", "d.d/f.o"}, {"a.c", "+pp", "a.cpp"}, {"a.obj", "+x", "a.obj"},
        {"a.c", "=", "a"},          {"a.c", "", "a.c"},      {"a.c", "-x", "a.xc"},
        {"a.c", "obj", "a.obj"},    {".xy", "=", ""},        {".", "=o", ".o"},
        {"ab.", "", "ab"},          {"a:b", "=c", "a:b.c"},  {"a.long", "+x", "a.long"},
        {"a.b", "+cde", "a.bde"},
    };
    for (const auto &[name, rule, result] : cases)
        EXPECT_EQ(rewritten(BRAX_changeext, name, rule), result) << name << " " << rule;
}

TEST(Text, ChangesDirectoriesByRule) {
    const char *cases[][3] = {
        {"s/a.c", "-p", "p/s/a.c"},  {"s\\a.c", "-p", "p\\s\\a.c"}, {"s/a.c", "=o/", "o/a.c"},
        {"s/a.c", "o", "o/a.c"},     {"s/a.c", "+t", "s/t/a.c"},    {"s/a.c", "", "s/a.c"},
        {"s/a.c", nullptr, "s/a.c"}, {"c:a.c", "+x", "c:x/a.c"},    {"ab.c", "-", "ab.c"},
        {"s/a.c", "=", "a.c"},
    };
    for (const auto &[name, rule, result] : cases)
        EXPECT_EQ(rewritten(BRAX_changepath, name, rule), result) << name;
}

TEST(Text, SplitsNamesAtAllThreeSeparators) {
    char part[BRAXFIELDSIZE];
    EXPECT_STREQ(BRAX_getpath(part, "c:name"), "c:");
    EXPECT_STREQ(BRAX_getpath(part, "name"), "");
    EXPECT_STREQ(BRAX_getpath(part, "a/b\\c"), "a/b\\");
    EXPECT_STREQ(BRAX_getname(part, "a/b\\c"), "c");
    EXPECT_STREQ(BRAX_getname(part, "a/"), "");
    EXPECT_STREQ(BRAX_tempname(part, "a", nullptr), "a.bak");
    OPTextrule = "=o";
    EXPECT_STREQ(BRAX_convertname(part, "x/a.c"), "a.o");
    OPTextrule = OPTextrulebuf;
}

TEST(Text, ComparesWithoutCaseAndBytesAsSigned) {
    EXPECT_EQ(stricmp("ABC", "abc"), 0);
    EXPECT_LT(stricmp("ab", "abc"), 0);
    EXPECT_EQ(strnicmp("abX", "abY", 2), 0);
    EXPECT_EQ(strnicmp("a", "b", 0), 0);
    EXPECT_EQ(stricmp("\xE9", "a"), 0xE9 - 256 - 'a');
    const std::string same(2048, 'x');
    EXPECT_EQ(stricmp((same + "a").c_str(), (same + "b").c_str()), 0);
    const char *text = "some TEXT";
    EXPECT_EQ(BRAX_strstr(text, "text"), text + 5);
    EXPECT_EQ(BRAX_strstr(text, "texts"), nullptr);
    EXPECT_EQ(BRAX_strstr(text, ""), nullptr);
}

TEST(Text, ClassifiesNames) {
    const struct {
        const char *name;
        int type;
        bool path, wildcards;
    } cases[] = {
        {"", 1, false, false},     {"-", 1, false, false},       {".", 1, true, false},
        {"a.c", 1, false, false},  {".obj", 4, false, false},    {"-x*", 4, false, false},
        {"+x", 4, false, false},   {"./a#", 3, false, true},     {"..", 1, true, false},
        {"c:", 2, true, false},    {"1:", 1, false, false},      {"/a", 2, false, false},
        {"dir/", 3, true, false},  {"dir/\"", 3, true, false},   {"a\"", 1, false, false},
        {"x.", 1, false, false},   {"dir/.", 3, true, false},    {"-x/", 4, false, false},
        {"*.c", 1, false, true},   {"a?", 1, false, true},       {"d/..\"", 3, true, false},
        {"c:\"", 2, false, false}, {"\\\\net", 2, false, false}, {&"/.\""[1], 4, false, false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(BRAX_typeofname(c.name), c.type) << c.name;
        EXPECT_EQ(BRAX_ispath(c.name), c.path) << c.name;
        EXPECT_EQ(BRAX_iswildcards(c.name), c.wildcards) << c.name;
    }
    EXPECT_FALSE(BRAX_iswildcards(nullptr));
}

} // namespace
