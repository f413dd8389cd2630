#include "base/options.h"
#include "search/list.h"
#include "search/rules.h"
#include "support.h"

#include <cstring>

namespace {

TEST(Rules, RewriteNames) {
    const struct {
        bool (*rewrite)(char *, const char *, const char *);
        const char *name, *rule, *result;
    } cases[] = {
        {replacePath, "src/a.c", "obj", "obj/a.c"},
        {replacePath, "src\\a.c", "obj\\", "obj\\a.c"},
        {replacePath, "c:a.c", "obj/", "obj/c:a.c"},
        {replacePath, "src/a.c", "d:", "d:/a.c"},
        {replacePath, "src/", "", "/"},
        {replacePathAbs, "src/a.c", "obj", "obj/a.c"},
        {replacePathAbs, "src/a.c", "d:", "d:/src/a.c"},
        {replaceExt, "out/a.c", "obj", "out/a.obj"},
        {replaceExt, "out/a.c", ".obj", "out/a.obj"},
        {replaceExt, "out/readme", "obj", "out/readme.obj"},
        {replaceExt, "dir.old/name", "obj", "dir.old/name.obj"},
        {replaceExt, "a.c", ".", "a"},
        {replaceExt, "a", "", "a"},
        {replaceExt, "a.b.c", "*~", "a.b.c~"},
        {replaceExt, "a.c12", "x*[0][1..2]", "a.x12"},
        {replaceExt, "a", "*", "a."},
        {replaceExt, ".c", "o", ".o"},
        {replaceExt, "a.", "..o", "a..o"},
        {replaceExt, "d\\.x/a", "o", "d\\.x/a.o"},
    };
    for (const auto &c : cases) {
        char output[BRAXFIELDSIZE];
        EXPECT_TRUE(c.rewrite(output, c.name, c.rule));
        EXPECT_STREQ(output, c.result) << c.name << " " << c.rule;
    }
}

TEST(Rules, RefuseLongNames) {
    BRAX_newrefusals();
    const std::string longest(BRAXFIELDSIZE - 1, 'n');
    char output[BRAXFIELDSIZE];
    const auto rewrite = [&] {
        EXPECT_FALSE(replaceExt(output, longest.c_str(), "o"));
        EXPECT_EQ(output, longest);
        EXPECT_FALSE(replacePath(output, longest.c_str(), "d"));
        EXPECT_EQ(output, longest);
    };
    EXPECT_EQ(printed(rewrite), "brax - NAME TOO LONG <" + std::string(40, 'n') + "...>\n");
    BRAX_newrefusals();
    BRAXhelpgiven = 0;
}

struct Batch : testing::Test {
    SearchList *list = CreateSearchList();
    void TearDown() override {
        DestroySearchList(list);
        BRAX_ini();
    }
    void add(const char *source, const char *dest) {
        AddToSearchList(list, source, dest);
    }
    std::string dests() {
        std::string text;
        for (int i = 0; i < list->count; ++i)
            text += std::string(i > 0 ? " " : "") + list->files[i]->dest;
        return text;
    }
};

TEST_F(Batch, NameAndPathRulesLeaveTheFirstNamesAlone) {
    const struct {
        const char *name, *path;
        int skip;
        const char *dests;
    } cases[] = {
        {"", "", 0, "-x a.c x/b.c s/*.c s/d.c"},
        {"#.o", "", 0, "#.o a.c x/b.c s/*.c #.o"},
        {"#.o", "out", 2, "-x a.c x/b.c out/*.c out/#.o"},
        {"", "d:", 0, "d:/-x d:/a.c d:/x/b.c d:/*.c d:/s/d.c"},
    };
    for (const auto &c : cases) {
        DestroySearchList(list);
        list = CreateSearchList();
        add("-x", "");
        add("a.c", "a.c");
        add("s/b.c", "x/b.c");
        add("s/*.c", "s/*.c");
        add("s/d.c", "");
        OPTnamerule = c.name;
        OPTpathrule = c.path;
        OPTskiprules = c.skip;
        ApplyNameRules(list);
        EXPECT_EQ(dests(), c.dests);
    }
}

TEST_F(Batch, ExtensionRuleReachesMatchesOrTheUnmatchedPattern) {
    add("*.c", "*.c");
    add("none.c", "none.c");
    char names[2][BRAXFIELDSIZE] = {"a.c", "deep/a.b.c"};
    // Matches from a deep tree may be longer than any buffer.
    const std::string deep = std::string(3000, 'd') + "/a";
    char *const longName = galloctext((deep + ".c").c_str());
    for (char *dest : {names[0], names[1], longName}) {
        const Match match = {names[0], dest, 0, 0, 0};
        AddMatch(list->files[0], &match);
    }
    gfree(longName);
    ApplyExtRule(list);
    EXPECT_EQ(dests(), "*.c none.c");
    OPTextrule = ".x*";
    ApplyExtRule(list);
    EXPECT_EQ(dests(), "*.c none.xc");
    EXPECT_STREQ(list->files[0]->matches[0]->dest, "a.xc");
    EXPECT_STREQ(list->files[0]->matches[1]->dest, "deep/a.b.xc");
    EXPECT_EQ(list->files[0]->matches[2]->dest, deep + ".xc");
}

} // namespace
