#include "base/options.h"
#include "base/text.h"

#include "support.h"

namespace {

using Rewrite = char *(*)(char *, const char *, const char *);

std::string rewritten(Rewrite function, const char *name, const char *rule) {
    char result[BRAXFIELDSIZE];
    return function(result, name, rule);
}

TEST(Text, ChangesExtensionsByRule) {
    const struct {
        const char *name, *rule, *result;
    } cases[] = {
        {"d.d/f", "=o", "d.d/f.o"}, {"a.c", "+pp", "a.cpp"}, {"a.obj", "+x", "a.obj"},
        {"a.c", "=", "a"},          {"a.c", "", "a.c"},      {"a.c", "-x", "a.xc"},
        {"a.c", "obj", "a.obj"},    {".xy", "=", ""},        {".", "=o", ".o"},
        {"ab.", "", "ab"},          {"a:b", "=c", "a:b.c"},  {"a.long", "+x", "a.long"},
        {"a.b", "+cde", "a.bde"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(rewritten(BRAX_changeext, c.name, c.rule), c.result) << c.name << " " << c.rule;
}

TEST(Text, ChangesDirectoriesByRule) {
    const struct {
        const char *name, *rule, *result;
    } cases[] = {
        {"s/a.c", "-p", "p/s/a.c"},  {"s\\a.c", "-p", "p\\s\\a.c"}, {"s/a.c", "=o/", "o/a.c"},
        {"s/a.c", "o", "o/a.c"},     {"s/a.c", "+t", "s/t/a.c"},    {"s/a.c", "", "s/a.c"},
        {"s/a.c", nullptr, "s/a.c"}, {"c:a.c", "+x", "c:x/a.c"},    {"ab.c", "-", "ab.c"},
        {"s/a.c", "=", "a.c"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(rewritten(BRAX_changepath, c.name, c.rule), c.result) << c.name;
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
        {"c:\"", 2, false, false}, {"\\\\net", 2, false, false}, {"\"", 1, false, false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(BRAX_typeofname(c.name), c.type) << c.name;
        EXPECT_EQ(BRAX_ispath(c.name), c.path) << c.name;
        EXPECT_EQ(BRAX_iswildcards(c.name), c.wildcards) << c.name;
    }
    EXPECT_FALSE(BRAX_iswildcards(nullptr));
}

} // namespace
