#include "base/options.h"
#include "base/text.h"
#include "search/argv.h"
#include "search/list.h"
#include "search/relative.h"
#include "search/rules.h"
#include "support.h"

#include <cstring>

namespace {

std::string taken(char *text) {
    std::string copy = text;
    gfree(text);
    return copy;
}

TEST(Relative, MovesNamesIntoADirectory) {
    const char *cases[][3] = {
        {"a.c", "lib/x/", "lib/x/a.c"},         {"lib/x/*.c", "lib/x/", "lib/x/*.c"},
        {"lib/y/*.c", "lib/x/", "lib/y/x/*.c"}, {"out/*.c", "lib/x/", "out/lib/x/*.c"},
        {"a.c", "lib\\x\\", "lib\\x\\a.c"},     {"src/a.c", "lib\\x\\", "src\\lib\\x\\a.c"},
        {"/a.c", "lib/", "lib//a.c"},           {"c:/lib/a.c", "lib/", "c:/lib/lib/a.c"},
    };
    for (const auto &[name, relative, result] : cases)
        EXPECT_EQ(taken(BRAX_makerelative(name, relative)), result) << name;
    EXPECT_EQ(taken(BRAX_makerelativeAbs("/home/u/src/a.c", "/home/u/")), "src/a.c");
    EXPECT_EQ(taken(BRAX_makerelativeAbs("/home/u/src/a.c", "/tmp/")), "home/u/src/a.c");
}

TEST(Relative, TakesDestinationsOutOfADirectory) {
    const struct {
        char separate;
        const char *dest, *relative, *name, *result;
    } cases[] = {
        {0, "", "lib/x/", "LIB/X/a.obj", "a.obj"},
        {0, "", "lib/y/", "lib/x/a.obj", "lib/x/a.obj"},
        {1, "out/*.obj", "out/", "out/sub/a.obj", "out/sub/a.obj"},
        {1, "*.obj", "lib/x/", "lib/x/a.obj", "a.obj"},
        {1, "out/*.obj", "lib/", "d/longname.obj", "out/longname.obj"},
        {1, "/*.obj", "lib/", "lib/a.obj", "a.obj"},
        {1, "", "", "d/a.obj", "a.obj"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(taken(BRAX_makeunrelative(c.separate, c.dest, c.relative, c.name)), c.result);
}

struct List : testing::Test {
    SearchList *list = CreateSearchList();
    int held = galloccount;
    void TearDown() override {
        freeFiles();
        DestroySearchList(list);
        BRAX_ini();
    }
    std::string dests() const {
        std::string text;
        for (int i = 0; i < list->count; ++i)
            text += std::string(i > 0 ? " " : "") + list->files[i]->dest;
        return text;
    }
};

TEST_F(List, ClassifiesUpdatesAndRemovesEntries) {
    const char *same = "*.c";
    EXPECT_TRUE(AddToSearchList(list, same, same));
    EXPECT_TRUE(AddToSearchList(list, "src/a.c", "b#.o"));
    EXPECT_TRUE(AddToSearchList(list, ".obj", ".obj2"));
    ASSERT_EQ(list->count, 3);
    const int expected[][3] = {
        {BRAXNAMEPLAIN, 1, 0}, {BRAXNAMERELATIVE, 1, 1}, {BRAXNAMEOPTION, 0, 1}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(list->files[i]->type, expected[i][0]);
        EXPECT_EQ(list->files[i]->wild, expected[i][1]);
        EXPECT_EQ(list->files[i]->separateDest, expected[i][2]);
    }
    const Match match = {list->files[0]->source, list->files[0]->dest, 1, 2, 3};
    EXPECT_TRUE(AddMatch(list->files[0], &match));
    // Only the texts of the call decide about wildcards: the source *.c counts no more.
    EXPECT_EQ(UpdateSearchList(list, 0, nullptr, "x.o"), 1);
    EXPECT_EQ(list->files[0]->wild + list->files[0]->nmatches, 0);
    EXPECT_EQ(UpdateSearchList(list, 0, "/abs/?", nullptr), 1);
    EXPECT_EQ(list->files[0]->type, BRAXNAMEABSOLUTE);
    EXPECT_EQ(UpdateSearchList(list, 3, "a", "a") + UpdateSearchList(list, -1, "a", "a"), 0);

    char source[BRAXFIELDSIZE] = "?";
    char dest[BRAXFIELDSIZE] = "?";
    EXPECT_FALSE(RemoveFromSearchList(list, 3, source, dest));
    EXPECT_STREQ(source, "");
    EXPECT_TRUE(RemoveFromSearchList(list, 0, source, dest));
    EXPECT_STREQ(source, "/abs/?");
    EXPECT_STREQ(dest, "x.o");
    EXPECT_STREQ(list->files[0]->source, "src/a.c");
    EXPECT_TRUE(RemoveFromSearchList(list, 1, nullptr, nullptr));
    EXPECT_TRUE(RemoveFromSearchList(list, 0, nullptr, nullptr));
    EXPECT_EQ(galloccount, held);
}

TEST_F(List, FlattensMatchesAndKeptNames) {
    MakeArgvs(nullptr);
    EXPECT_EQ(BRAXargnum, 0);
    for (const char *name : {"*.c", "none.c", "-opt"})
        AddToSearchList(list, name, name);
    char names[2][4] = {"a.c", "b.o"};
    const Match match = {names[0], names[1], 11, 22, 1};
    AddMatch(list->files[0], &match);
    const struct {
        int keepUnfound, keepOpts;
        std::string sources;
    } cases[] = {{1, 0, "a.c none.c -opt "}, {0, 0, "a.c "}, {0, 1, "a.c -opt "}};
    OPTmakedatelist = OPTmakesizelist = OPTmakeattriblist = 1;
    for (const auto &c : cases) {
        OPTkeepunfound = c.keepUnfound;
        OPTkeepopts = c.keepOpts;
        MakeArgvs(list);
        std::string sources;
        for (int i = 0; i < BRAXargnum; ++i)
            sources += std::string(BRAXsargv[i]) + " ";
        EXPECT_EQ(sources, c.sources);
        EXPECT_STREQ(BRAXdargv[0], "b.o");
        EXPECT_EQ(BRAXsizeargv[0] + BRAXdateargv[0] * 100 + BRAXattribargv[0] * 10000, 12211);
        if (BRAXargnum > 1) {
            EXPECT_EQ(BRAXsizeargv[1] + BRAXdateargv[1] + BRAXattribargv[1], 0);
        }
        freeFiles();
        EXPECT_EQ(BRAXargnum, 0);
    }
    // Part of a batch is never returned.
    list->files[1]->incomplete = true;
    MakeArgvs(list);
    EXPECT_EQ(BRAXargnum, 0);
}

TEST(Rules, RewriteNames) {
    const struct {
        bool (*rewrite)(char *, const char *, const char *);
        const char *name, *rule, *result;
    } cases[] = {
        {replacePath, "src/a.c", "obj", "obj/a.c"},
        {replacePath, "src\\a.c", "obj\\", "obj\\a.c"},
        {replacePath, "src/a.c", "d:", "d:/a.c"},
        {replacePath, "src/", "", "/"},
        {replacePathAbs, "src/a.c", "d:", "d:/src/a.c"},
        {replaceExt, "out/a.c", "obj", "out/a.obj"},
        {replaceExt, "out/readme", "obj", "out/readme.obj"},
        {replaceExt, "dir.old/name", "obj", "dir.old/name.obj"},
        {replaceExt, "a.c", ".", "a"},
        {replaceExt, "a.c12", "x*[0][1..2]", "a.x12"},
        {replaceExt, "a", "*", "a."},
        {replaceExt, ".c", "o", ".o"},
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

TEST_F(List, NameAndPathRulesLeaveTheFirstNamesAlone) {
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
        const std::pair<const char *, const char *> names[] = {
            {"-x", ""}, {"a.c", "a.c"}, {"s/b.c", "x/b.c"}, {"s/*.c", "s/*.c"}, {"s/d.c", ""}};
        for (const auto &[source, dest] : names)
            AddToSearchList(list, source, dest);
        OPTnamerule = c.name;
        OPTpathrule = c.path;
        OPTskiprules = c.skip;
        ApplyNameRules(list);
        EXPECT_EQ(dests(), c.dests);
    }
}

TEST_F(List, ExtensionRuleReachesMatchesOrTheUnmatchedPattern) {
    AddToSearchList(list, "*.c", "*.c");
    AddToSearchList(list, "none.c", "none.c");
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
